#pragma once

#include "vpc/view/Camera.h"
#include "vpc/view/LoadedPointSet.h"
#include "vpc/view/ShownOptions.h"

namespace vpc {

/// The camera that the options describe, for a point set that already has its cuts. What is not
/// given is chosen to fit what sections and clippings leave of the cloud; that takes an update of
/// the point set, but only where there are cuts and the choice depends on them.
ViewCamera chooseCamera(LoadedPointSet& points, const CameraOptions& camera,
                        const ShownOptions& shown);

}  // namespace vpc
