#pragma once

#include "viewer/camera/Box.h"
#include "viewer/camera/ViewCamera.h"

namespace vpc::viewer {

/// The shortest distance that still has a direction where the coordinates are as large as a
/// place's.
double leastDistance(const glm::dvec3& place);
/// Whether numbers are finite, lengths are neither 0 nor so small beside the coordinates that
/// doubles lose the direction, and the up vector is one.
bool isSound(const ViewCamera& camera);
/// The camera that is wanted, its up vector put right; the one from before where it is not sound.
/// Every motion ends here, so that no number that is none ever enters a view.
ViewCamera guarded(const ViewCamera& wanted, const ViewCamera& before);
/// Whether a box holds something and its numbers can be looked at.
bool isSound(const Box& box);

}  // namespace vpc::viewer
