#include "vpc/view/PictureFrame.h"

#include <algorithm>
#include <cmath>

namespace vpc {

PictureFrame::PictureFrame(const ViewCamera& camera, const Viewport& size)
    : axes_(camera),
      target_(camera.target),
      perspective_(camera.perspective),
      targetDistance_((camera.target - camera.eye).Magnitude()),
      pixel_(std::max(camera.fieldWidth / size.width, camera.fieldHeight / size.height)),
      halfWidth_(size.width / 2.0),
      halfHeight_(size.height / 2.0) {
}

VpcVector3D PictureFrame::At(double column, double row) const {
    return target_ + axes_.Right() * ((column + 0.5 - halfWidth_) * pixel_) +
           axes_.Up() * ((halfHeight_ - row - 0.5) * pixel_);
}

bool PictureFrame::Shows(const VpcVector3D& p) const {
    const CameraAxes::Place place = axes_.Of(p);
    if (!(place.depth > 0.0)) return false;
    const double pixel = perspective_ ? pixel_ * place.depth / targetDistance_ : pixel_;
    return std::abs(place.right) <= halfWidth_ * pixel &&
           std::abs(place.above) <= halfHeight_ * pixel;
}

}  // namespace vpc
