#include "vpc/view/PointImage.h"

#include <png.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

namespace vpc {

namespace {

/// The pixels from `start` on that lie within a picture of `count` pixels.
struct PixelRange {
    PixelRange(double start, double side, int count)
        : first(static_cast<int>(std::clamp(start, 0.0, static_cast<double>(count)))),
          last(static_cast<int>(std::clamp(start + side, 0.0, static_cast<double>(count)))) {}

    int first;
    int last;
};

}  // namespace

PointImage::PointImage(const ViewCamera& camera, const Viewport& size)
    : axes_(camera),
      size_(size),
      perspective_(camera.perspective),
      targetDistance_((camera.target - camera.eye).Magnitude()),
      scale_(std::min(size.width / camera.fieldWidth, size.height / camera.fieldHeight)),
      depths_(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height),
              std::numeric_limits<float>::max()),
      pixels_(depths_.size(), background) {
}

void PointImage::Draw(const VpcVector3D& p, const Colour& colour, double size) {
    const CameraAxes::Place place = axes_.Of(p);
    if (!(place.depth > 0.0)) return;
    const double scale = perspective_ ? scale_ * targetDistance_ / place.depth : scale_;
    const double x = size_.width / 2.0 + place.right * scale;
    const double y = size_.height / 2.0 - place.above * scale;
    if (!std::isfinite(x) || !std::isfinite(y)) return;
    const double side = std::round(std::clamp(size, 1.0, largestSize));
    Fill(x, y, side, static_cast<float>(place.depth), colour);
}

void PointImage::Fill(double x, double y, double side, float depth, const Colour& colour) {
    const double half = (side - 1.0) / 2.0;
    const PixelRange columns(std::floor(x - half), side, size_.width);
    const PixelRange rows(std::floor(y - half), side, size_.height);
    for (int row = rows.first; row < rows.last; ++row) {
        for (int column = columns.first; column < columns.last; ++column) {
            const std::size_t pixel =
                static_cast<std::size_t>(row) * static_cast<std::size_t>(size_.width) +
                static_cast<std::size_t>(column);
            if (depth >= depths_[pixel]) continue;
            depths_[pixel] = depth;
            pixels_[pixel] = colour;
        }
    }
}

std::vector<char> PointImage::Png() const {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(size_.width);
    image.height = static_cast<png_uint_32>(size_.height);
    image.format = PNG_FORMAT_RGB;
    png_alloc_size_t bytes = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::vector<char> file(bytes);
    if (png_image_write_to_memory(&image, file.data(), &bytes, 0, pixels_.data(), 0, nullptr) == 0)
        throw std::runtime_error(std::string("the picture cannot be made: ") + image.message);
    file.resize(bytes);
    return file;
}

}  // namespace vpc
