#pragma once

#include <cstdio>
#include <cstdlib>

namespace vpc::fuzz {

/// Ends the process where a condition does not hold that must always hold; the input is then a
/// find.
inline void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "violated: %s\n", what);
    std::abort();
}

}  // namespace vpc::fuzz
