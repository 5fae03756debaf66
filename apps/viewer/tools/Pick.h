#pragma once

#include <string>

#include <glm/vec3.hpp>

#include "draw/Colour.h"

namespace vpc::viewer {

/// A point that was picked, as the engine gives it: to the last bit that of the file, placed in the
/// drawing.
struct Pick {
    glm::dvec3 place{0.0, 0.0, 0.0};
    /// As it is shown.
    draw::Colour colour;
    int entity = 0;

    bool operator==(const Pick&) const = default;
};

}  // namespace vpc::viewer
