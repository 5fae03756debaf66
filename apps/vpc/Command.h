#pragma once

#include <string>

#include <CLI/CLI.hpp>

namespace vpc {

/// One of the program's commands: declares its options when it is made, and runs once they have
/// been read.
class Command {
public:
    virtual ~Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    bool Chosen() const { return options_->parsed(); }
    std::string Name() const { return options_->get_name(); }
    /// \return the program's exit status; throws CommandError for a failure
    virtual int Run() = 0;

protected:
    Command(CLI::App& app, const std::string& name, const std::string& description)
        : options_(app.add_subcommand(name, description)) {}
    CLI::App& Options() { return *options_; }

private:
    CLI::App* options_;
};

}  // namespace vpc
