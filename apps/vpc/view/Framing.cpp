#include "vpc/view/Framing.h"

namespace vpc {

ViewCamera chooseCamera(LoadedPointSet& points, const CameraOptions& camera,
                        const ViewOptions& view) {
    const CameraOptions::Corners whole = points.Corners(view.Matrix());
    if (!view.HasCuts() || camera.IsComplete()) return camera.Choose(whole);
    points.Update(CameraOptions::Seeing(whole), view.Matrix());
    const auto left = points.VisibleCorners();
    return camera.Choose(left ? *left : whole);
}

}  // namespace vpc
