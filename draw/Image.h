#pragma once

#include <vector>

#include "draw/Colour.h"
#include "draw/ImageSize.h"

namespace vpc::draw {

/// The colours of a picture.
class Image {
public:
    Image(const ImageSize& size, const Colour& background)
        : size_(size), pixels_(size.Pixels(), background) {}

    const ImageSize& Size() const { return size_; }
    Colour& operator[](std::size_t pixel) { return pixels_[pixel]; }
    const Colour& operator[](std::size_t pixel) const { return pixels_[pixel]; }
    /// Three bytes a pixel.
    const Colour* Data() const { return pixels_.data(); }

private:
    ImageSize size_;
    std::vector<Colour> pixels_;
};

static_assert(sizeof(Colour) == 3);

}  // namespace vpc::draw
