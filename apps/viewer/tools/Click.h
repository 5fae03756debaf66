#pragma once

#include <algorithm>
#include <cstdlib>

#include <glm/vec2.hpp>

namespace vpc::viewer {

/// Whether a mouse that was pressed at one pixel and is at another has not been dragged: hands
/// tremble.
inline bool isClick(const glm::ivec2& press, const glm::ivec2& place) {
    constexpr int tremble = 4;
    return std::max(std::abs(place.x - press.x), std::abs(place.y - press.y)) <= tremble;
}

}  // namespace vpc::viewer
