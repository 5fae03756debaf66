#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace vpc {

/// The program's exit status.
enum ExitStatus : int { exitDone = 0, exitFailed = 1, exitWrongUsage = 2 };

/// Ends a command that has failed. Its text is a sentence for the user, in the system's encoding,
/// that names the file and says what to do; the program prints it and exits with status 1.
class CommandError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Ends a command because its options do not go together: exit status 2.
class CommandUsageError : public CommandError {
public:
    using CommandError::CommandError;
};

/// Ends a command because a signal asked for it: the exit status is 128 and the signal's number, as
/// shells have it; 130 after Ctrl-C, 143 after SIGTERM.
class CommandInterrupted : public CommandError {
public:
    using CommandError::CommandError;
};

/// One of the program's commands: declares its options when it is made, and runs once they have
/// been read.
class Command {
public:
    virtual ~Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    bool Chosen() const;
    std::string Name() const;
    /// The names of its options, "--help" among them.
    std::vector<std::string> OptionNames() const;
    /// \return the program's exit status; throws CommandError for a failure
    virtual int Run() = 0;

protected:
    Command(CLI::App& app, const std::string& name, const std::string& description);
    CLI::App& Options() { return *options_; }
    /// Prints a warning on standard error.
    void Warn(const std::string& text) const;

private:
    CLI::App* options_;
};

}  // namespace vpc
