#pragma once

#include <string>

#include <glm/vec3.hpp>

namespace vpc::viewer {

/// A plane through the drawing. What lies on the normal's side, and on the plane, is kept.
struct Section {
    std::string name;
    glm::dvec3 point{0.0, 0.0, 0.0};
    /// Of length 1.
    glm::dvec3 normal{0.0, 0.0, 1.0};
    bool enabled = true;

    bool operator==(const Section&) const = default;
};

}  // namespace vpc::viewer
