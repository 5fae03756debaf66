#pragma once

#include "core/util/VpcDefinitions.h"
#include "platform/OdGeMatrix3d.h"
#include "view/PointBuffers.h"

namespace vpc {

// Each of these functions moves the first `count` points of the buffers by `matrix`, in place, and
// sets their colours.

/// Leaves the colours as they are.
void movePoints(const PointBuffers& buffers, unsigned long long count, const OdGeMatrix3d& matrix);
/// Colours by the z of the moved points, over the range that these points have.
void colourByElevation(const PointBuffers& buffers, unsigned long long count,
                       const OdGeMatrix3d& matrix, VpcColorScheme scheme);
/// Colours by the luminance of the colours, over the range that these points have. Stores the
/// luminance in the intensities.
void colourByIntensity(const PointBuffers& buffers, unsigned long long count,
                       const OdGeMatrix3d& matrix, VpcColorScheme scheme);

}  // namespace vpc
