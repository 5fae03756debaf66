#include "CameraAxes.h"

namespace vpc {

namespace {
/// Below this sine two directions count as the same one.
constexpr double parallel = 1e-9;
}  // namespace

CameraAxes::CameraAxes(const ViewCamera& camera)
    : eye_(camera.eye), forward_(camera.target - camera.eye) {
    forward_.Normalize();
    up_ = UprightTo(forward_, camera.up);
    right_ = forward_.Cross(up_);
}

CameraAxes::Place CameraAxes::Of(const VpcVector3D& p) const {
    const VpcVector3D offset = p - eye_;
    return {offset.Dot(right_), offset.Dot(up_), offset.Dot(forward_)};
}

VpcVector3D CameraAxes::UprightTo(const VpcVector3D& direction, const VpcVector3D& up) {
    VpcVector3D unit = direction;
    unit.Normalize();
    for (VpcVector3D candidate : {up, VpcVector3D(0, 1, 0), VpcVector3D(1, 0, 0)}) {
        candidate.Normalize();
        VpcVector3D upright = candidate - unit * candidate.Dot(unit);
        if (!(upright.Magnitude() > parallel)) continue;
        upright.Normalize();
        return upright;
    }
    return up;
}

}  // namespace vpc
