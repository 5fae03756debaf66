#pragma once

#include <array>
#include <string>

#include "core/geometry/VpcVector3D.h"
#include "platform/OdGeMatrix3d.h"
#include "platform/OdGePoint3d.h"

namespace vpc {

/// The corners of a box, as a matrix places them in the world.
struct PlacedBox {
    std::array<VpcVector3D, 8> corners;

    PlacedBox(const OdGePoint3d& low, const OdGePoint3d& high, const OdGeMatrix3d& matrix);
    /// Where the box lies, as "0,0,-3 to 10,20.5,7".
    std::string Text() const;
};

}  // namespace vpc
