#include "vpc/common/Progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace vpc {

namespace {

constexpr std::chrono::milliseconds patience(1000);
constexpr std::chrono::milliseconds interval(100);
constexpr std::size_t usualWidth = 80;
constexpr std::size_t barWidth = 20;

/// Columns of the terminal that a line may take without wrapping.
std::size_t lineWidth() {
    winsize size = {};
    const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return (known ? size.ws_col : usualWidth) - 1;
}

}  // namespace

Progress::Progress() : terminal_(isatty(STDERR_FILENO) == 1), next_(Clock::now() + patience) {
}

Progress::~Progress() {
    Clear();
}

void Progress::Begin(std::string step, unsigned long long inAll) {
    step_ = std::move(step);
    inAll_ = inAll;
    done_ = 0;
}

void Progress::Add(unsigned long long points) {
    done_ += points;
    if (!terminal_ || Clock::now() < next_) return;
    next_ = Clock::now() + interval;
    Show();
}

void Progress::Show() {
    const double share =
        inAll_ == 0 ? 0.0 : std::min(static_cast<double>(done_) / static_cast<double>(inAll_), 1.0);
    const auto full = static_cast<std::size_t>(share * static_cast<double>(barWidth));
    std::string line = "[";
    line.append(full, '#').append(barWidth - full, '-').append("] ");
    line.append(std::to_string(static_cast<int>(share * 100.0))).append(" %  ").append(step_);
    line.resize(lineWidth(), ' ');
    std::fprintf(stderr, "\r%s", line.c_str());
    std::fflush(stderr);
    shown_ = true;
}

void Progress::Clear() {
    if (!shown_) return;
    std::fprintf(stderr, "\r%s\r", std::string(lineWidth(), ' ').c_str());
    std::fflush(stderr);
    shown_ = false;
}

}  // namespace vpc
