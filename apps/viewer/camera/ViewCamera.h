#pragma once

#include <glm/vec3.hpp>

#include "draw/ImageSize.h"
#include "draw/Projection.h"

namespace vpc::viewer {

/// Where a view is seen from, in drawing coordinates.
struct ViewCamera {
    glm::dvec3 eye{0.0, 0.0, 1.0};
    glm::dvec3 target{0.0, 0.0, 0.0};
    /// Of length 1 and at a right angle to the direction of view.
    glm::dvec3 up{0.0, 1.0, 0.0};
    /// What the view shows from its lower to its upper edge at the target's distance, in drawing
    /// units. The width follows from the window's shape.
    double fieldHeight = 1.0;
    bool perspective = true;

    bool operator==(const ViewCamera&) const = default;

    /// From the eye to the target, of length 1.
    glm::dvec3 Ahead() const;
    /// Of length 1.
    glm::dvec3 Right() const;
    /// From the eye to the target.
    double Distance() const;
    double FieldWidth(const draw::ImageSize& size) const;
    /// Where the world appears in a picture of that size.
    draw::Projection ProjectionTo(const draw::ImageSize& size) const;
};

}  // namespace vpc::viewer
