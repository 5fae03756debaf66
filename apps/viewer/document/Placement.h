#pragma once

#include <glm/vec3.hpp>

namespace vpc::viewer {

/// Where an entity stands in the drawing: its points are scaled, turned about the z axis and moved,
/// in this order.
struct Placement {
    glm::dvec3 location{0.0, 0.0, 0.0};
    /// In radians, about the z axis.
    double rotation = 0.0;
    /// Above 0.
    double scale = 1.0;

    bool operator==(const Placement&) const = default;

    glm::dvec3 ToDrawing(const glm::dvec3& point) const;
    glm::dvec3 ToPoints(const glm::dvec3& place) const;
    /// The same for directions, which keep their length.
    glm::dvec3 DirectionToDrawing(const glm::dvec3& direction) const;
    glm::dvec3 DirectionToPoints(const glm::dvec3& direction) const;
};

}  // namespace vpc::viewer
