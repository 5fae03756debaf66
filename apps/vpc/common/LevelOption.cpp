#include "vpc/common/LevelOption.h"

#include <charconv>

#include <CLI/CLI.hpp>

#include "vpc/common/Command.h"

namespace vpc {

LevelOption::LevelOption(CLI::App& options, const std::string& help) {
    options.add_option("--level", text_, help)->type_name("N");
}

std::optional<unsigned long long> LevelOption::Read(unsigned long long levels) const {
    if (text_.empty()) return std::nullopt;
    unsigned long long level = 0;
    const char* const end = text_.data() + text_.size();
    const auto result = std::from_chars(text_.data(), end, level);
    if (result.ec == std::errc() && result.ptr == end && level < levels) return level;
    if (levels == 0) throw CommandUsageError("--level: the file has no levels");
    throw CommandUsageError("--level takes a level of the file, 0 to " +
                            std::to_string(levels - 1) + "; '" + text_ + "' is not one");
}

}  // namespace vpc
