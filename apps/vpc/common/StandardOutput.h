#pragma once

#include <string_view>

namespace vpc {

/// The name that stands for standard output where a file to write is asked for.
inline constexpr std::string_view standardOutputName = "-";

/// Appends to standard output. Throws CommandError where that fails, as when the program that reads
/// it has ended.
void writeStandardOutput(std::string_view bytes);

}  // namespace vpc
