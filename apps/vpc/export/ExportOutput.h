#pragma once

#include <functional>
#include <string_view>

namespace vpc {

/// Where an export writes to: takes the bytes of the scan, one piece after the other.
using ExportOutput = std::function<void(std::string_view bytes)>;

}  // namespace vpc
