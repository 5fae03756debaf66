#include "viewer/camera/Pivot.h"

#include <algorithm>
#include <limits>

#include "viewer/camera/CameraGuard.h"
#include "viewer/camera/Ray.h"

namespace vpc::viewer {

namespace {

bool isFinite(const glm::dvec3& place) {
    return isSound(Box{place, place});
}

/// The middle of the part of a ray that lies in a box; a ray of a parallel view has no beginning.
std::optional<glm::dvec3> middleIn(const Box& box, const Ray& ray, bool begins) {
    double from = begins ? 0.0 : -std::numeric_limits<double>::infinity();
    double to = std::numeric_limits<double>::infinity();
    for (int i = 0; i < 3; ++i) {
        if (ray.direction[i] == 0.0) {
            if (ray.origin[i] < box.min[i] || ray.origin[i] > box.max[i]) return std::nullopt;
            continue;
        }
        const double a = (box.min[i] - ray.origin[i]) / ray.direction[i];
        const double b = (box.max[i] - ray.origin[i]) / ray.direction[i];
        from = std::max(from, std::min(a, b));
        to = std::min(to, std::max(a, b));
    }
    if (!(from <= to)) return std::nullopt;
    return ray.origin + ray.direction * (from + (to - from) / 2.0);
}

}  // namespace

glm::dvec3 Pivot::Find(const ViewCamera& camera, const draw::ImageSize& size,
                       const glm::ivec2& cursor, const std::optional<glm::dvec3>& seen,
                       const Box& box) {
    const Ray ray = rayThrough(camera, size, middleOf(cursor));
    const auto isAhead = [&camera](const glm::dvec3& place) {
        return isFinite(place) &&
               (!camera.perspective || depthOf(camera, place) > leastDistance(camera.eye));
    };
    const auto find = [&]() -> glm::dvec3 {
        if (seen && isAhead(*seen)) return *seen;
        if (last_ && isAhead(*last_)) return ray.AtDepth(camera, depthOf(camera, *last_));
        if (isSound(box)) {
            const auto middle = middleIn(box, ray, camera.perspective);
            if (middle && isAhead(*middle)) return *middle;
            if (isAhead(box.Centre())) return ray.AtDepth(camera, depthOf(camera, box.Centre()));
        }
        return ray.AtDepth(camera, camera.Distance());
    };
    last_ = find();
    return *last_;
}

}  // namespace vpc::viewer
