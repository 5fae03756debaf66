#include "vpc/common/Command.h"

#include <cstdio>

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

void Command::Warn(const std::string& text) const {
    std::fprintf(stderr, "vpc %s: warning: %s\n", Name().c_str(), text.c_str());
}

std::vector<std::string> Command::OptionNames() const {
    std::vector<std::string> names;
    for (const CLI::Option* option : options_->get_options())
        for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    return names;
}

}  // namespace vpc
