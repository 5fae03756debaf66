#pragma once

#include <string>
#include <vector>

namespace vpc {

/// The name that the user most probably meant by `typed`: the one that is fewest insertions,
/// removals, replacements and swaps of neighbours away (the optimal string alignment distance).
/// Empty where none is near: more than a third of the letters would have to change.
std::string nearestName(const std::string& typed, const std::vector<std::string>& names);

}  // namespace vpc
