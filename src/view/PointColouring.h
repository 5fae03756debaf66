#pragma once

#include "core/util/VpcDefinitions.h"
#include "platform/OdGeMatrix3d.h"
#include "view/PointBuffers.h"

namespace vpc {

// What becomes of the first `count` slots of the buffers after the points were read. All of them
// move the coordinates by `matrix`, in place.

/// Leaves the colours.
void movePoints(const PointBuffers& buffers, unsigned long long count, const OdGeMatrix3d& matrix);
/// Colours by the moved points' z, over the range that they have.
void colourByElevation(const PointBuffers& buffers, unsigned long long count,
                       const OdGeMatrix3d& matrix, VpcColorScheme scheme);
/// Colours by the luminance of the colours, over the range that they have, and keeps it in the
/// intensities.
void colourByIntensity(const PointBuffers& buffers, unsigned long long count,
                       const OdGeMatrix3d& matrix, VpcColorScheme scheme);

}  // namespace vpc
