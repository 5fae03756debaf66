#pragma once

#include "core/geometry/VpcTriplet.h"

namespace vpc {

/// How many children a root of these extents has along each axis so that they are about cubes:
/// every extent divided by the shortest and rounded. A cube has 2, 2, 2. The numbers are in range
/// whatever the extents are.
VpcTriplet<unsigned long long> dimensionRatios(double dx, double dy, double dz);

}  // namespace vpc
