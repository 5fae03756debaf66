#pragma once

#include <chrono>
#include <string>

namespace vpc {

/// How far a pass over many points has come. A pass that takes more than a second shows it on the
/// terminal, if standard error is one; a pass that the user interrupts ends.
class PassProgress {
public:
    /// \param command what the line begins with: "vpc info"
    /// \param points  the points of the whole pass
    PassProgress(std::string command, unsigned long long points);
    /// Takes the line off the terminal.
    ~PassProgress();
    PassProgress(const PassProgress&) = delete;
    PassProgress& operator=(const PassProgress&) = delete;

    /// Counts points that are done. Throws CommandInterrupted where the user has interrupted.
    void Add(unsigned long long points);

private:
    using Clock = std::chrono::steady_clock;

    void Show();

    std::string command_;
    unsigned long long points_;
    unsigned long long done_ = 0;
    bool terminal_;
    bool shown_ = false;
    Clock::time_point start_;
    Clock::time_point nextShow_;
};

}  // namespace vpc
