#pragma once

#include <string>
#include <vector>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

namespace vpc::viewer {

/// A region that goes through the drawing without end, at a right angle to its plane: the points in
/// it are kept, or those outside.
struct Clip {
    std::string name;
    /// The plane's origin and axes, in drawing coordinates; the axes have length 1 and a right
    /// angle between them.
    glm::dvec3 origin{0.0, 0.0, 0.0};
    glm::dvec3 xAxis{1.0, 0.0, 0.0};
    glm::dvec3 yAxis{0.0, 1.0, 0.0};
    /// In the plane; at least three.
    std::vector<glm::dvec2> corners;
    bool keepsInside = true;
    bool enabled = true;

    bool operator==(const Clip&) const = default;
};

}  // namespace vpc::viewer
