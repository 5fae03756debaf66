#include "core/geometry/VpcFrustumDef.h"

#include <algorithm>

bool VpcFrustumDef::UpdateViewGeometry(const VpcPoint3D& camera, const VpcPoint3D& target,
                                       const VpcVector3D& up, double distance, double width,
                                       double height, bool perspective,
                                       const VpcTransform3D& transform) {
    SetCamera(camera, target, up, distance, transform);
    SetCenters(camera, viewDirection_ * -1.0);
    centreAxis_ = VpcLine3D(camera, VpcVector3D(camera, target));
    return UpdateSizes(width, height, perspective);
}

bool VpcFrustumDef::UpdatePickGeometry(const VpcPoint3D& camera, const VpcPoint3D& target,
                                       const VpcPoint3D& pickPoint, const VpcVector3D& up,
                                       double distance, double width, double height,
                                       bool perspective, const VpcTransform3D& transform) {
    SetCamera(camera, target, up, distance, transform);
    const VpcVector3D forward = viewDirection_ * -1.0;
    const VpcVector3D toPick(camera, pickPoint);
    const double depth = toPick.Dot(forward);
    // A pick in the plane of the camera gives no perspective axis.
    const bool slanted = perspective && depth != 0.0;
    const VpcPoint3D start = perspective ? camera : pickPoint - forward * depth;
    const VpcVector3D step = slanted ? toPick / depth : forward;
    SetCenters(start, step);
    centreAxis_ = VpcLine3D(start, step);
    return UpdateSizes(width, height, perspective);
}

bool VpcFrustumDef::UpdatePerspective(double width, double height) {
    return UpdateSizes(width, height, true);
}

bool VpcFrustumDef::UpdateOrthographic(double width, double height) {
    return UpdateSizes(width, height, false);
}

void VpcFrustumDef::SetCamera(const VpcPoint3D& camera, const VpcPoint3D& target,
                              const VpcVector3D& up, double distance,
                              const VpcTransform3D& transform) {
    transform_ = transform;
    givenCamera_ = camera;
    givenTarget_ = target;
    cameraDistance_ = camera.DistanceTo(target);
    viewDirection_ = VpcVector3D(target, camera);
    viewDirection_.Normalize();
    up_ = up;
    up_.Normalize();
    right_ = up_.Cross(viewDirection_);
    nearDistance_ = 0.0;
    farDistance_ = 3.0 * distance;
}

void VpcFrustumDef::SetCenters(const VpcPoint3D& start, const VpcVector3D& step) {
    nearCenter_ = start + step * nearDistance_;
    farCenter_ = start + step * farDistance_;
}

bool VpcFrustumDef::UpdateSizes(double width, double height, bool perspective) {
    const auto at = [&](double distance, double size) {
        return perspective ? distance * size / cameraDistance_ : size;
    };
    nearWidth_ = at(nearDistance_, width);
    nearHeight_ = at(nearDistance_, height);
    farWidth_ = at(farDistance_, width);
    farHeight_ = at(farDistance_, height);
    return RecomputeVerticesPlanes();
}

bool VpcFrustumDef::RecomputeVerticesPlanes() {
    camera_ = givenCamera_;
    target_ = givenTarget_;
    transform_.ApplyForwardTransform(camera_);
    transform_.ApplyForwardTransform(target_);
    SetRectangle(FarTopLeft, farCenter_, farWidth_, farHeight_);
    SetRectangle(NearTopLeft, nearCenter_, nearWidth_, nearHeight_);
    for (VpcPoint3D& vertex : vertices_) transform_.ApplyForwardTransform(vertex);

    // The order of the three vertices makes every normal point into the volume.
    const auto plane = [&](Vertex a, Vertex b, Vertex c) {
        return VpcPlaneDef(vertices_[a], vertices_[b], vertices_[c]);
    };
    planes_[PlaneLeft] = plane(NearBottomLeft, FarBottomLeft, FarTopLeft);
    planes_[PlaneTop] = plane(NearTopLeft, FarTopLeft, FarTopRight);
    planes_[PlaneRight] = plane(NearTopRight, FarTopRight, FarBottomRight);
    planes_[PlaneBottom] = plane(NearBottomRight, FarBottomRight, FarBottomLeft);
    planes_[PlaneNear] = plane(NearBottomLeft, NearTopLeft, NearBottomRight);
    planes_[PlaneFar] = plane(FarBottomLeft, FarBottomRight, FarTopLeft);
    return true;
}

void VpcFrustumDef::SetRectangle(Vertex topLeft, const VpcPoint3D& centre, double width,
                                 double height) {
    const VpcVector3D toTopLeft = (up_ * height - right_ * width) * 0.5;
    const VpcVector3D toTopRight = (up_ * height + right_ * width) * 0.5;
    vertices_[topLeft] = centre + toTopLeft;
    vertices_[topLeft + 1U] = centre + toTopRight;
    vertices_[topLeft + 2U] = centre - toTopRight;
    vertices_[topLeft + 3U] = centre - toTopLeft;
}

bool VpcFrustumDef::IsInside(double x, double y, double z) const {
    return std::none_of(planes_.begin(), planes_.end(),
                        [&](const VpcPlaneDef& plane) { return plane.IsBehind(x, y, z); });
}

bool VpcFrustumDef::Intersects(const vpc::BoxCorners& box) const {
    return std::none_of(planes_.begin(), planes_.end(), [&box](const VpcPlaneDef& plane) {
        const auto furthest = [](double coefficient, double min, double max) {
            return coefficient > 0 ? max : min;
        };
        return plane.IsBehind(furthest(plane.coefficients[0], box.minPoint.x, box.maxPoint.x),
                              furthest(plane.coefficients[1], box.minPoint.y, box.maxPoint.y),
                              furthest(plane.coefficients[2], box.minPoint.z, box.maxPoint.z));
    });
}

bool VpcFrustumDef::IsWithinRadiusFromCenterAxis(const VpcPoint3D& p) const {
    return centreAxis_.DistanceTo(p) <= farWidth_;
}
