#pragma once

#include <glm/vec3.hpp>

#include "draw/Point3.h"

namespace vpc::viewer {

// The viewer reckons with glm; the library that draws knows points of its own.

inline draw::Point3 toPoint(const glm::dvec3& v) {
    return {v.x, v.y, v.z};
}

inline glm::dvec3 toVector(const draw::Point3& p) {
    return {p.x, p.y, p.z};
}

}  // namespace vpc::viewer
