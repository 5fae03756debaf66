#include "core/geometry/DimensionRatios.h"

#include <algorithm>
#include <cmath>

namespace vpc {

namespace {

/// A ratio of two extents, rounded; in range whatever the extents were.
unsigned long long roundedRatio(double extent, double shortest, double rounding) {
    constexpr double largest = 1e18;
    const double ratio = std::trunc(extent / shortest + rounding);
    if (!(ratio >= 0.0)) return 0;
    return static_cast<unsigned long long>(std::min(ratio, largest));
}

VpcTriplet<unsigned long long> unevenRatios(double dx, double dy, double dz) {
    constexpr double rounding = 0.4999;
    // The third branch rounds a little differently from the other two, and is meant to.
    constexpr double roundingOverZ = 0.49999;
    if (dy >= dx && dz >= dx)
        return {1, roundedRatio(dy, dx, rounding), roundedRatio(dz, dx, rounding)};
    if (dx >= dy && dz >= dy)
        return {roundedRatio(dx, dy, rounding), 1, roundedRatio(dz, dy, rounding)};
    return {roundedRatio(dx, dz, roundingOverZ), roundedRatio(dy, dz, roundingOverZ), 1};
}

}  // namespace

VpcTriplet<unsigned long long> dimensionRatios(double dx, double dy, double dz) {
    const VpcTriplet<unsigned long long> ratios = unevenRatios(dx, dy, dz);
    if (ratios == VpcTriplet<unsigned long long>{1, 1, 1}) return {2, 2, 2};
    return ratios;
}

}  // namespace vpc
