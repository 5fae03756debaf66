#pragma once

#include "core/geometry/VpcTriplet.h"

namespace vpc {

/// How many children a root of these extents has along each axis so that they are about cubes:
/// every extent over the shortest, rounded. A cube has 2, 2, 2. In range whatever the extents are.
VpcTriplet<unsigned long long> dimensionRatios(double dx, double dy, double dz);

}  // namespace vpc
