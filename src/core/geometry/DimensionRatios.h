#pragma once

#include "core/geometry/VpcTriplet.h"

namespace vpc {

/// How many children a root of these extents has along each axis, so that they are roughly cubes:
/// each extent divided by the shortest one and rounded. A cube has 2, 2, 2. The results are in
/// range whatever the extents are.
VpcTriplet<unsigned long long> dimensionRatios(double dx, double dy, double dz);

}  // namespace vpc
