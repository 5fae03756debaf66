#include "draw/Projection.h"

#include <algorithm>

namespace vpc::draw {

Projection::Projection(const Camera& camera, const ImageSize& size)
    : camera_(camera),
      size_(size),
      scale_(std::min(size.width / camera.fieldWidth, size.height / camera.fieldHeight)),
      focalPixels_(scale_ * camera.targetDistance) {
}

Projection::Place Projection::Of(const Point3& p) const {
    const Point3 offset = p - camera_.eye;
    const double depth = offset.Dot(camera_.ahead);
    const double scale = 1.0 / PixelSide(depth);
    return {size_.width / 2.0 + offset.Dot(camera_.right) * scale,
            size_.height / 2.0 - offset.Dot(camera_.up) * scale, depth};
}

Point3 Projection::At(const Place& place) const {
    const double side = PixelSide(place.depth);
    return camera_.eye + camera_.right * ((place.column - size_.width / 2.0) * side) +
           camera_.up * ((size_.height / 2.0 - place.row) * side) + camera_.ahead * place.depth;
}

}  // namespace vpc::draw
