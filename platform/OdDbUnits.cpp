#include "platform/OdDbUnits.h"

#include <array>
#include <cmath>

namespace {

/// A unit is `significand` * 10^`exponent` metres. The two are kept apart so that 1 ft is exactly
/// 12 in and 1 m is exactly 1000 mm.
struct Length {
    double significand;
    int exponent;
};

constexpr std::array<Length, 21> lengths = {
    {{0.0, 0},
     {254.0, -4},
     {3048.0, -4},
     {1609344.0, -3},
     {1.0, -3},
     {1.0, -2},
     {1.0, 0},
     {1.0, 3},
     {254.0, -10},
     {254.0, -7},
     {9144.0, -4},
     {1.0, -10},
     {1.0, -9},
     {1.0, -6},
     {1.0, -1},
     {1.0, 1},
     {1.0, 2},
     {1.0, 9},
     {149597870700.0, 0},         // by definition, since 2012
     {9460730472580800.0, 0},     // of 365.25 days
     {30856775814913673.0, 0}}};  // 648000 / pi astronomical

bool isLength(OdDb::UnitsValue unit) {
    return unit > OdDb::kUnitsUndefined && unit <= OdDb::kUnitsParsecs;
}

}  // namespace

double oddbGetUnitsConversion(OdDb::UnitsValue from, OdDb::UnitsValue to) {
    if (!isLength(from) || !isLength(to)) return 1.0;
    const Length& one = lengths[static_cast<std::size_t>(from)];
    const Length& other = lengths[static_cast<std::size_t>(to)];
    const int exponent = one.exponent - other.exponent;
    const double ratio = one.significand / other.significand;
    // Only powers of ten with a positive exponent are exact.
    return exponent < 0 ? ratio / std::pow(10.0, -exponent) : ratio * std::pow(10.0, exponent);
}
