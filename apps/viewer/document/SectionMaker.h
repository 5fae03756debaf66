#pragma once

#include <vector>

#include <glm/vec3.hpp>

#include "viewer/camera/Box.h"
#include "viewer/document/Drawing.h"
#include "viewer/document/Section.h"

namespace vpc::viewer {

enum class Axis { X, Y, Z };

/// A plane through a box's centre, at a right angle to an axis, that keeps what lies on the axis's
/// positive side. Its name is left to `withSection`.
/// \throws Refusal where the box is empty
Section sectionAcross(Axis axis, const Box& box);
/// A plane through three places.
/// \param ahead the view's direction: what lies behind the plane for the viewer is kept
/// \throws Refusal where the places lie on a line
Section sectionThrough(const glm::dvec3& a, const glm::dvec3& b, const glm::dvec3& c,
                       const glm::dvec3& ahead);
/// The section along its normal.
Section moved(const Section& section, double distance);
/// The same plane, which keeps the other side.
Section flipped(const Section& section);
/// The corners of what a plane cuts out of a box, in their order around it: three to six, or none
/// where it misses the box.
std::vector<glm::dvec3> sectionOutline(const Section& section, const Box& box);
/// The drawing with one more section; a section without a name gets "Section 1" and so on.
Drawing withSection(const Drawing& drawing, const Section& section);

}  // namespace vpc::viewer
