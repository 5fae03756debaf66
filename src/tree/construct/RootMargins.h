#pragma once

#include "core/geometry/VpcBoundingBoxAxisAligned.h"

namespace vpc {

/// What the driver adds on all sides of the box that it has measured around the points of all
/// scans, which must not be empty.
inline double measuredBoxMargin(const VpcBoundingBoxAxisAligned& box) {
    return box.sortedSides.front().second / 10000;
}

/// What a construction tree adds on all sides of the box that it is given for its root.
inline constexpr double rootMargin = 0.0001;

}  // namespace vpc
