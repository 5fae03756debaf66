#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace vpc {

/// The digits that eight characters begin with. Texts of numbers are read eight characters at a
/// time and without a branch for each of them, because with numbers of changing length the
/// processor would mispredict most of those branches.
struct DigitRun {
    /// Looks at the eight characters at `p`.
    explicit DigitRun(const char* p) {
        std::memcpy(&values, p, sizeof values);
        values ^= 0x3030303030303030ULL;
        // Sets the top bit of every byte above 9. A carry disturbs only bytes behind such a byte.
        const std::uint64_t others =
            ((values + 0x7676767676767676ULL) | values) & 0x8080808080808080ULL;
        length = others == 0 ? 8 : std::countr_zero(others) / 8;
    }

    /// The characters as bytes, where digits have become 0 to 9 and all else 10 and above.
    std::uint64_t values = 0;
    /// How many of the characters, from the first on, are digits.
    int length = 0;
};

}  // namespace vpc
