#pragma once

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include "viewer/camera/ViewCamera.h"

// Each function returns another camera; the one that comes in stays as it is. Where the wanted
// camera is not sound (see CameraGuard.h), the one that came in is returned. Angles are in radians,
// places in the picture in pixels from its top left.

namespace vpc::viewer {

/// What the horizon does while turning.
enum class Horizon {
    /// It stays level: yaw goes about the z axis, and pitch ends short of the poles.
    Level,
    /// The view turns about its own axes, any way round.
    Free,
};

/// Turns eye and target around a pivot, which keeps its place in the picture: with r, u and a the
/// pivot's shares of the camera's right, up and ahead, the new eye is
///     pivot - r * right' - u * up' - a * ahead'.
/// \param yaw   moves the eye anticlockwise around the pivot, seen from above
/// \param pitch raises the eye
ViewCamera orbit(const ViewCamera& camera, const glm::dvec3& pivot, double yaw, double pitch,
                 Horizon horizon = Horizon::Level);

/// The camera rolled about its direction so that the horizon is level and the sky above.
ViewCamera levelled(const ViewCamera& camera);

/// Slides eye and target at a right angle to the view, so that what was grabbed moves in the
/// picture as the cursor does:
///     shift = (from - to) * side of a pixel at the grabbed depth.
/// \param grabbed the place under the cursor at the press
ViewCamera pan(const ViewCamera& camera, const draw::ImageSize& size, const glm::dvec3& grabbed,
               const glm::dvec2& from, const glm::dvec2& to);

/// What remains of a distance after one step of a zoom towards it.
constexpr double zoomShare = 0.8;

/// Moves towards a place, which keeps its place in the picture. In perspective the eye moves along
/// its line to the place, from the distance d to
///     d * zoomShare ^ steps    as long as a step is longer than `leastStep`, then on by
///     leastStep                for each step, through the place and beyond.
/// Steps may be fractions; n steps are the same as one of n; as many steps back undo them. In a
/// parallel view the field shrinks around the place by the same share, without end. In perspective
/// the target comes to lie at the place's depth, so that a scale and a change to a parallel view
/// hold for what one looks at. \param steps     towards the place; below 0 away from it \param
/// leastStep 0 or more, in drawing units
ViewCamera zoom(const ViewCamera& camera, const glm::dvec3& towards, double steps,
                double leastStep);

/// Half of the usual angle of view, from the picture's lower to its upper edge, as its tangent.
constexpr double usualHalfAngle = 0.41421356237309503;

/// The target's plane keeps its size in the picture. Into perspective, the eye goes to where a
/// usual angle of view shows it so.
ViewCamera withPerspective(const ViewCamera& camera, bool perspective);

/// The same picture with the target at another depth (in perspective the field grows with it).
/// \param depth above 0
ViewCamera retarget(const ViewCamera& camera, double depth);

/// A step of somebody who walks: lengths in drawing units, angles as the head turns.
struct WalkStep {
    double ahead = 0.0;
    double right = 0.0;
    double up = 0.0;
    double yaw = 0.0;    ///< to the left
    double pitch = 0.0;  ///< upwards; ends short of the poles
};

/// Turns the view about the eye, then moves the eye. Ahead and right are level, wherever one looks:
/// the eye keeps its height unless `up` says otherwise.
ViewCamera walk(const ViewCamera& camera, const WalkStep& step);

}  // namespace vpc::viewer
