#pragma once

#include <string>

namespace vpc {

/// So many of a thing, in words: "1 point", "2 points".
inline std::string counted(unsigned long long number, const std::string& thing) {
    return std::to_string(number) + " " + thing + (number == 1 ? "" : "s");
}

}  // namespace vpc
