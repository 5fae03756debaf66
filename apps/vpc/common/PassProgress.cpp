#include "vpc/common/PassProgress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include "core/util/DisplayText.h"
#include "vpc/common/Interrupt.h"

namespace vpc {

namespace {

constexpr std::chrono::seconds silence(1);
constexpr std::chrono::milliseconds interval(100);
/// Takes the cursor to the line's start and what stands there away.
constexpr const char* clearLine = "\r\x1b[K";

}  // namespace

PassProgress::PassProgress(std::string command, unsigned long long points)
    : command_(std::move(command)),
      points_(std::max(points, 1ULL)),
      terminal_(isatty(STDERR_FILENO) == 1),
      start_(Clock::now()),
      nextShow_(start_ + silence) {
}

PassProgress::~PassProgress() {
    if (shown_) std::fputs(clearLine, stderr);
}

void PassProgress::Add(unsigned long long points) {
    Interrupt::Check();
    done_ += points;
    if (terminal_ && Clock::now() >= nextShow_) Show();
}

void PassProgress::Show() {
    nextShow_ = Clock::now() + interval;
    shown_ = true;
    const double share = std::min(static_cast<double>(done_) / static_cast<double>(points_), 1.0);
    const double seconds = std::chrono::duration<double>(Clock::now() - start_).count();
    std::fprintf(stderr, "%s%s: %d %% of %s points, %s left", clearLine, command_.c_str(),
                 static_cast<int>(share * 100.0),
                 DisplayText::Short(static_cast<double>(points_)).c_str(),
                 DisplayText::Duration(seconds * (1.0 - share) / std::max(share, 0.001)).c_str());
    std::fflush(stderr);
}

}  // namespace vpc
