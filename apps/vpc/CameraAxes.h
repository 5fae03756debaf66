#pragma once

#include "ViewCamera.h"

namespace vpc {

/// A camera's own frame, with the eye as its origin.
class CameraAxes {
public:
    /// Where a point is seen: how far to the right of the eye and above it, and how far ahead.
    struct Place {
        double right = 0.0;
        double above = 0.0;
        double depth = 0.0;
    };

    explicit CameraAxes(const ViewCamera& camera);

    Place Of(const VpcVector3D& p) const;
    const VpcVector3D& Right() const { return right_; }
    const VpcVector3D& Up() const { return up_; }

    /// The part of `up` that is at right angles to `direction`, of length 1; where there is none,
    /// that of the axis y, or of x.
    static VpcVector3D UprightTo(const VpcVector3D& direction, const VpcVector3D& up);

private:
    VpcVector3D eye_;
    VpcVector3D forward_;
    VpcVector3D up_;
    VpcVector3D right_;
};

}  // namespace vpc
