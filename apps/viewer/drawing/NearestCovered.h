#pragma once

#include <optional>

#include <glm/vec2.hpp>

#include "draw/ImageSize.h"

namespace vpc::viewer {

/// How far beside a pixel something is still looked for, in pixels.
constexpr int coveredReach = 4;

/// The covered pixel nearest to `pixel` and at most coveredReach away; nothing where there is none.
/// \param isCovered takes a pixel of the picture
template <class IsCovered>
std::optional<glm::ivec2> nearestCovered(const glm::ivec2& pixel, const draw::ImageSize& size,
                                         const IsCovered& isCovered) {
    std::optional<glm::ivec2> nearest;
    int leastSquare = coveredReach * coveredReach + 1;
    for (int down = -coveredReach; down <= coveredReach; ++down) {
        for (int across = -coveredReach; across <= coveredReach; ++across) {
            const glm::ivec2 at = pixel + glm::ivec2(across, down);
            const int square = across * across + down * down;
            const bool inside = at.x >= 0 && at.y >= 0 && at.x < size.width && at.y < size.height;
            if (square >= leastSquare || !inside || !isCovered(at)) continue;
            nearest = at;
            leastSquare = square;
        }
    }
    return nearest;
}

}  // namespace vpc::viewer
