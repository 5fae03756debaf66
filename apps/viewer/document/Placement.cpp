#include "viewer/document/Placement.h"

#include <cmath>

namespace vpc::viewer {

namespace {

glm::dvec3 turned(const glm::dvec3& v, double angle) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {c * v.x - s * v.y, s * v.x + c * v.y, v.z};
}

}  // namespace

glm::dvec3 Placement::ToDrawing(const glm::dvec3& point) const {
    return turned(point * scale, rotation) + location;
}

glm::dvec3 Placement::ToPoints(const glm::dvec3& place) const {
    return turned(place - location, -rotation) / scale;
}

glm::dvec3 Placement::DirectionToDrawing(const glm::dvec3& direction) const {
    return turned(direction, rotation);
}

glm::dvec3 Placement::DirectionToPoints(const glm::dvec3& direction) const {
    return turned(direction, -rotation);
}

}  // namespace vpc::viewer
