#include "viewer/engine/HostView.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <glm/geometric.hpp>

#include "viewer/camera/CameraGuard.h"

namespace vpc::viewer {

namespace {

bool isFinite(const glm::dvec3& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

/// How far ahead of the eye the corners of a box lie.
struct Depths {
    double nearest = std::numeric_limits<double>::infinity();
    double farthest = -std::numeric_limits<double>::infinity();

    Depths(const ViewCamera& camera, const Placement& placement, const Box& box) {
        const glm::dvec3 ahead = camera.Ahead();
        for (const glm::dvec3& corner : box.Corners()) {
            const double depth = glm::dot(placement.ToDrawing(corner) - camera.eye, ahead);
            nearest = std::min(nearest, depth);
            farthest = std::max(farthest, depth);
        }
    }
};

}  // namespace

bool isSound(const Placement& placement) {
    return isFinite(placement.location) && std::isfinite(placement.rotation) &&
           std::isfinite(placement.scale) && placement.scale > 0.0;
}

HostView::HostView(const ViewCamera& camera, const draw::ImageSize& size,
                   const Placement& placement, const Box& box)
    : camera_(camera),
      size_(size),
      placement_(placement),
      isSound_(isSound(camera) && isSound(placement)) {
    if (!isSound_) return;
    if (!box.IsEmpty()) PlaceEye(box);
    eye_ = ToHost(camera_.eye);
    target_ = ToHost(camera_.target);
    up_ = {camera_.up.x, camera_.up.y, camera_.up.z};
    const OdGePoint3d location = ToHost(placement_.location);
    const glm::dvec3 x = placement_.DirectionToDrawing({1.0, 0.0, 0.0});
    const glm::dvec3 y = placement_.DirectionToDrawing({0.0, 1.0, 0.0});
    matrix_[0][0] = x.x;
    matrix_[0][1] = y.x;
    matrix_[0][3] = location.x;
    matrix_[1][0] = x.y;
    matrix_[1][1] = y.y;
    matrix_[1][3] = location.y;
    matrix_[2][3] = location.z;
}

void HostView::PlaceEye(const Box& box) {
    const Depths depths(camera_, placement_, box);
    // A parallel view has no eye that anything could lie behind.
    const double back = camera_.perspective ? 0.0 : std::max(-depths.nearest, 0.0);
    camera_.eye -= camera_.Ahead() * back;

    constexpr double reach = 3.0;
    const double needed = (depths.farthest + back) * 1.01 / placement_.scale / reach;
    const glm::dvec3 toEye = camera_.eye / placement_.scale - box.Centre();
    if (!(glm::length(toEye) < needed)) return;
    // A power of two, against the points' sign, costs coordinates that are large no digit.
    const double distance = std::exp2(std::ceil(std::log2(needed + std::abs(toEye.x))));
    shift_ = toEye.x + box.Centre().x > 0.0 ? -distance : distance;
}

bool HostView::operator==(const HostView& other) const {
    return camera_ == other.camera_ && size_ == other.size_ && placement_ == other.placement_ &&
           shift_ == other.shift_;
}

bool HostView::SeesCentreOf(const Box& box) const {
    const glm::dvec3 centre = placement_.ToDrawing(box.Centre());
    const auto seen = camera_.ProjectionTo(size_).Of({centre.x, centre.y, centre.z});
    return seen.depth > 0.0 && seen.column >= 0.0 && seen.column < size_.width && seen.row >= 0.0 &&
           seen.row < size_.height;
}

OdGePoint3d HostView::ToHost(const glm::dvec3& place) const {
    const glm::dvec3 p = place / placement_.scale;
    return {p.x + shift_, p.y, p.z};
}

glm::dvec3 HostView::ToDrawing(const OdGePoint3d& point) const {
    return glm::dvec3(point.x - shift_, point.y, point.z) * placement_.scale;
}

}  // namespace vpc::viewer
