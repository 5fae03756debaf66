#pragma once

#include "Viewport.h"
#include "core/geometry/VpcVector3D.h"

namespace vpc {

/// A camera as a host describes it, in world coordinates.
struct ViewCamera {
    VpcVector3D eye;
    VpcVector3D target;
    VpcVector3D up{0, 0, 1};
    /// What is seen at the target's distance, in world units.
    double fieldWidth = 0.0;
    double fieldHeight = 0.0;
    Viewport viewport;
    bool perspective = true;
};

}  // namespace vpc
