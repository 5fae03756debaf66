#pragma once

#include <string>
#include <vector>

namespace vpc::viewer {

/// The values of `vpc prepare --unit` that the program's help lists, in its order; "auto" always
/// comes first, and alone where the help lists none.
std::vector<std::string> unitsInHelp(const std::string& help);

}  // namespace vpc::viewer
