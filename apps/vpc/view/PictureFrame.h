#pragma once

#include "vpc/view/Camera.h"

namespace vpc {

/// Where a camera's picture shows the world: all of its field, and more beside it where the picture
/// has another shape. Pixels are counted from the top left.
class PictureFrame {
public:
    PictureFrame(const ViewCamera& camera, const Viewport& size);

    /// A point of the line from the eye through the middle of a pixel, as far away as the target.
    VpcVector3D At(double column, double row) const;
    /// Whether the point lies within the picture and in front of the eye.
    bool Shows(const VpcVector3D& p) const;

private:
    CameraAxes axes_;
    VpcVector3D target_;
    bool perspective_;
    double targetDistance_;
    /// World units a pixel at the target's distance.
    double pixel_;
    double halfWidth_;
    double halfHeight_;
};

}  // namespace vpc
