#pragma once

#include <string_view>

namespace vpc {

/// A text without any of the characters `blanks` at both ends.
inline std::string_view trimmed(std::string_view text, const char* blanks) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace vpc
