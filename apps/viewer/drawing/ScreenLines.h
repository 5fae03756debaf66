#pragma once

#include <optional>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include "draw/ImageSize.h"
#include "draw/Projection.h"
#include "viewer/camera/ViewCamera.h"

namespace vpc::viewer {

/// Where lines and places of the drawing are in a picture. Only what is in the picture, or close
/// beside it, becomes a number of pixels, so that no line is too long for floats, and none comes
/// back from behind the eye.
class ScreenLines {
public:
    struct Line {
        glm::vec2 from;
        glm::vec2 to;
    };

    ScreenLines(const ViewCamera& camera, const draw::ImageSize& size);

    /// The part of a line of the drawing that is seen; nothing where there is none.
    std::optional<Line> Between(const glm::dvec3& from, const glm::dvec3& to) const;
    /// The same for a line in pixels.
    std::optional<Line> OnScreen(glm::dvec2 from, glm::dvec2 to) const;
    std::optional<glm::vec2> At(const glm::dvec3& place) const;

private:
    bool IsBefore(double depth) const { return !perspective_ || depth >= nearest_; }
    double DepthOf(const glm::dvec3& place) const;
    glm::dvec2 PixelOf(const glm::dvec3& place) const;

    draw::Projection projection_;
    glm::dvec3 eye_;
    glm::dvec3 ahead_;
    bool perspective_;
    /// The least depth that is drawn in perspective.
    double nearest_;
};

}  // namespace vpc::viewer
