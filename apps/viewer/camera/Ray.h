#pragma once

#include <optional>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include "viewer/camera/ViewCamera.h"

namespace vpc::viewer {

/// All that is seen at one place of the picture.
struct Ray {
    /// The eye in perspective; in a parallel view a place in the eye's plane.
    glm::dvec3 origin{0.0, 0.0, 0.0};
    /// Of length 1.
    glm::dvec3 direction{0.0, 0.0, -1.0};

    /// The place on the ray that lies at a distance ahead of the eye.
    glm::dvec3 AtDepth(const ViewCamera& camera, double depth) const;
};

/// The middle of a pixel; whole numbers are the edges of pixels.
inline glm::dvec2 middleOf(const glm::ivec2& pixel) {
    return glm::dvec2(pixel) + 0.5;
}

/// \param place in pixels from the picture's top left
Ray rayThrough(const ViewCamera& camera, const draw::ImageSize& size, const glm::dvec2& place);
/// How far ahead of the eye a point lies; below 0 behind it.
double depthOf(const ViewCamera& camera, const glm::dvec3& point);
/// Where a point appears, in pixels from the picture's top left; nothing for what lies at or behind
/// the eye in perspective.
std::optional<glm::dvec2> placeOf(const ViewCamera& camera, const draw::ImageSize& size,
                                  const glm::dvec3& point);
/// How long in the drawing the side of a pixel is at the point's depth. Behind the eye, the
/// target's depth counts.
double pixelSideAt(const ViewCamera& camera, const draw::ImageSize& size, const glm::dvec3& point);

}  // namespace vpc::viewer
