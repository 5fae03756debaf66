#pragma once

#include <chrono>
#include <string>

#include "vpc/common/TerminalLine.h"

namespace vpc {

/// Shows on a terminal how far a command has come, once it has taken a second: a line on standard
/// error that disappears at the end. Elsewhere it shows nothing.
class Progress {
public:
    Progress();

    /// Begins a step of `inAll` points.
    /// \param step what the command does, as "writing points"
    void Begin(std::string step, unsigned long long inAll);
    /// So many more points of the step are done.
    void Add(unsigned long long points);
    /// Takes the line off the terminal, before something else is printed.
    void Clear() { line_.Clear(); }

private:
    using Clock = std::chrono::steady_clock;

    TerminalLine line_;
    Clock::time_point next_;
    std::string step_;
    unsigned long long inAll_ = 0;
    unsigned long long done_ = 0;
};

}  // namespace vpc
