#pragma once

#include <cstdint>

namespace vpc {

/// How a LAS file holds the coordinates of one axis: as integers that a reader multiplies by the
/// scale and moves by the offset, in doubles.
struct LasAxis {
    double scale = 1.0;
    double offset = 0.0;

    /// What a reader makes of an integer.
    double Decode(std::int32_t whole) const { return whole * scale + offset; }
    /// The integer that comes nearest to the coordinate.
    std::int32_t Encode(double coordinate) const {
        double whole = (coordinate - offset) / scale;
        // Written so that a value that is no number ends within the range, too.
        whole = whole > -largest ? whole : -largest;
        whole = whole < largest ? whole : largest;
        return static_cast<std::int32_t>(whole < 0.0 ? whole - 0.5 : whole + 0.5);
    }
    /// How far a coordinate is from what a reader gets.
    double Error(double coordinate) const {
        const double error = Decode(Encode(coordinate)) - coordinate;
        return error < 0.0 ? -error : error;
    }
    bool Reaches(double coordinate) const {
        const double whole = (coordinate - offset) / scale;
        return whole > -largest && whole < largest;
    }

    /// No integer is larger, so that rounding stays within 32 bits.
    static constexpr double largest = 2147483647.0;
};

}  // namespace vpc
