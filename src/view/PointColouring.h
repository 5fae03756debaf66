#pragma once

#include <cstdint>

#include "core/geometry/VpcInterval.h"
#include "core/util/VpcDefinitions.h"
#include "platform/OdGeMatrix3d.h"
#include "view/PointBuffers.h"

namespace vpc {

/// The range of a ramp that nothing is coloured by.
inline const VpcInterval noRamp(0.0, 0.0);

/// The ramp's colour at a share of its length, as the functions below colour: 0xRRGGBB. Shares
/// beyond 0 to 1 give the ends; a scheme without a ramp gives 0.
std::uint32_t rampColour(VpcColorScheme scheme, double share);

// Each of these functions moves the first `count` points of the buffers by `matrix`, in place, and
// sets their colours. They return the range that the ramp stands for; noRamp where the scheme has
// none or no point has a value.

/// Leaves the colours as they are.
VpcInterval movePoints(const PointBuffers& buffers, unsigned long long count,
                       const OdGeMatrix3d& matrix);
/// Colours by the z of the moved points, over the range that these points have.
VpcInterval colourByElevation(const PointBuffers& buffers, unsigned long long count,
                              const OdGeMatrix3d& matrix, VpcColorScheme scheme);
/// Colours by the luminance of the colours, over the range that these points have. Stores the
/// luminance in the intensities.
VpcInterval colourByIntensity(const PointBuffers& buffers, unsigned long long count,
                              const OdGeMatrix3d& matrix, VpcColorScheme scheme);

}  // namespace vpc
