#include "vpc/common/Progress.h"

#include <utility>

namespace vpc {

namespace {

constexpr std::chrono::milliseconds patience(1000);
constexpr std::chrono::milliseconds interval(100);

}  // namespace

Progress::Progress() : next_(Clock::now() + patience) {
}

void Progress::Begin(std::string step, unsigned long long inAll) {
    step_ = std::move(step);
    inAll_ = inAll;
    done_ = 0;
}

void Progress::Add(unsigned long long points) {
    done_ += points;
    if (!line_.IsPossible() || Clock::now() < next_) return;
    next_ = Clock::now() + interval;
    const double share =
        inAll_ == 0 ? 0.0 : static_cast<double>(done_) / static_cast<double>(inAll_);
    line_.Show(share, percentText(share) + "  " + step_);
}

}  // namespace vpc
