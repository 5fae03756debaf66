#pragma once

#include <optional>
#include <vector>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include "viewer/camera/Ray.h"
#include "viewer/camera/ViewCamera.h"
#include "viewer/document/Clip.h"
#include "viewer/document/Drawing.h"

namespace vpc::viewer {

/// What the corners of a clip are drawn on: a plane at a right angle to the view.
struct ClipPlane {
    glm::dvec3 origin{0.0, 0.0, 0.0};
    glm::dvec3 xAxis{1.0, 0.0, 0.0};
    glm::dvec3 yAxis{0.0, 1.0, 0.0};

    /// Through the target of a view.
    static ClipPlane Of(const ViewCamera& camera);
    /// Where a ray meets the plane, in the plane; nothing where it runs along it.
    std::optional<glm::dvec2> Meet(const Ray& ray) const;
    glm::dvec3 Place(const glm::dvec2& corner) const {
        return origin + corner.x * xAxis + corner.y * yAxis;
    }
};

/// Its name is left to `withClip`. Corners that repeat the one before are left out.
/// \throws Refusal for fewer than three corners, for a region without an area, and for one whose
///         border crosses itself
Clip makeClip(const ClipPlane& plane, const std::vector<glm::dvec2>& corners, bool keepsInside);
/// The corners of the rectangle between two opposite ones.
std::vector<glm::dvec2> rectangleBetween(const glm::dvec2& a, const glm::dvec2& b);
/// The drawing with one more clip; a clip without a name gets "Clip 1" and so on.
Drawing withClip(const Drawing& drawing, const Clip& clip);

}  // namespace vpc::viewer
