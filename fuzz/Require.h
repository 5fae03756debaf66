#pragma once

#include <cstdio>
#include <cstdlib>

namespace vpc::fuzz {

/// Ends the process, which makes the input a find, where something does not hold that always does.
inline void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "violated: %s\n", what);
    std::abort();
}

}  // namespace vpc::fuzz
