#include "viewer/camera/Ray.h"

#include <glm/geometric.hpp>

#include "viewer/camera/DrawPoint.h"

namespace vpc::viewer {

glm::dvec3 Ray::AtDepth(const ViewCamera& camera, double depth) const {
    const glm::dvec3 ahead = camera.Ahead();
    const double covered = glm::dot(origin - camera.eye, ahead);
    return origin + direction * ((depth - covered) / glm::dot(direction, ahead));
}

Ray rayThrough(const ViewCamera& camera, const draw::ImageSize& size, const glm::dvec2& place) {
    const draw::Projection projection = camera.ProjectionTo(size);
    if (!camera.perspective)
        return {toVector(projection.At({place.x, place.y, 0.0})), camera.Ahead()};
    // Relative to the eye, since large coordinates would cost the direction its last digits.
    const double side = projection.PixelSide(1.0);
    const glm::dvec3 direction = camera.Ahead() +
                                 camera.Right() * ((place.x - size.width / 2.0) * side) +
                                 camera.up * ((size.height / 2.0 - place.y) * side);
    return {camera.eye, glm::normalize(direction)};
}

double depthOf(const ViewCamera& camera, const glm::dvec3& point) {
    return glm::dot(point - camera.eye, camera.Ahead());
}

std::optional<glm::dvec2> placeOf(const ViewCamera& camera, const draw::ImageSize& size,
                                  const glm::dvec3& point) {
    if (camera.perspective && !(depthOf(camera, point) > 0.0)) return std::nullopt;
    const auto place = camera.ProjectionTo(size).Of({point.x, point.y, point.z});
    return glm::dvec2(place.column, place.row);
}

double pixelSideAt(const ViewCamera& camera, const draw::ImageSize& size, const glm::dvec3& point) {
    const double depth = depthOf(camera, point);
    return camera.ProjectionTo(size).PixelSide(depth > 0.0 ? depth : camera.Distance());
}

}  // namespace vpc::viewer
