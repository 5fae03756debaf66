#pragma once

#include <functional>
#include <string>

#include "core/util/ReplacementFile.h"

namespace vpc {

/// Removes what killed runs have left where an output of this name would be written.
void removeLeftoversBeside(const std::string& output);

/// Lets `write` write the file `path`, which appears under its name only when it is whole. Throws
/// CommandError where that fails; what else `write` throws passes through.
void writeOutputFile(const std::string& path, const std::function<void(ReplacementFile&)>& write);

}  // namespace vpc
