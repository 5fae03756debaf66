#include "vpc/common/Command.h"

#include <CLI/CLI.hpp>

namespace vpc {

Command::Command(CLI::App& app, const std::string& name, const std::string& description)
    : options_(app.add_subcommand(name, description)) {
}

bool Command::Chosen() const {
    return options_->parsed();
}

std::string Command::Name() const {
    return options_->get_name();
}

}  // namespace vpc
