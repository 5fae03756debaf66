#pragma once

#include <array>
#include <limits>

#include <glm/common.hpp>
#include <glm/geometric.hpp>
#include <glm/vec3.hpp>

namespace vpc::viewer {

/// An axis-aligned box in drawing coordinates; empty as long as nothing has been added.
struct Box {
    glm::dvec3 min{std::numeric_limits<double>::infinity()};
    glm::dvec3 max{-std::numeric_limits<double>::infinity()};

    bool operator==(const Box&) const = default;

    bool IsEmpty() const { return !(min.x <= max.x); }
    void Add(const glm::dvec3& point) {
        min = glm::min(min, point);
        max = glm::max(max, point);
    }
    void Add(const Box& box) {
        if (box.IsEmpty()) return;
        Add(box.min);
        Add(box.max);
    }
    glm::dvec3 Centre() const { return (min + max) * 0.5; }
    double Diagonal() const { return IsEmpty() ? 0.0 : glm::length(max - min); }
    std::array<glm::dvec3, 8> Corners() const {
        std::array<glm::dvec3, 8> corners;
        for (unsigned i = 0; i < corners.size(); ++i)
            corners[i] = {(i & 1U) != 0 ? max.x : min.x, (i & 2U) != 0 ? max.y : min.y,
                          (i & 4U) != 0 ? max.z : min.z};
        return corners;
    }
};

}  // namespace vpc::viewer
