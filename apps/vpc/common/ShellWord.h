#pragma once

#include <string>

namespace vpc {

/// A name as a shell takes it, for commands that are shown to the user: in quotes where it needs
/// them.
std::string shellWord(const std::string& name);

}  // namespace vpc
