#include "core/geometry/DimensionRatios.h"

#include <algorithm>
#include <cmath>

namespace vpc {

namespace {

/// The rounded ratio of two extents, kept in range whatever the extents are.
unsigned long long roundedRatio(double extent, double shortest, double rounding) {
    constexpr double largest = 1e18;
    const double ratio = std::trunc(extent / shortest + rounding);
    if (!(ratio >= 0.0)) return 0;
    return static_cast<unsigned long long>(std::min(ratio, largest));
}

VpcTriplet<unsigned long long> unevenRatios(double dx, double dy, double dz) {
    constexpr double rounding = 0.4999;
    // The third branch deliberately rounds a little differently from the other two.
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
