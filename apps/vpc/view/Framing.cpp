#include "vpc/view/Framing.h"

namespace vpc {

ViewCamera chooseCamera(LoadedPointSet& points, const CameraOptions& camera,
                        const ShownOptions& shown) {
    const CameraOptions::Corners whole = points.Corners(shown.Matrix());
    if (!shown.HasCuts() || camera.IsComplete()) return camera.Choose(whole);
    points.Update(CameraOptions::Seeing(whole), shown.Matrix());
    const auto left = points.VisibleCorners();
    return camera.Choose(left ? *left : whole);
}

}  // namespace vpc
