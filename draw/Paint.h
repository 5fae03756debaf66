#pragma once

#include <cstdint>
#include <vector>

#include "draw/Image.h"
#include "draw/Surface.h"

namespace vpc::draw {

/// Gives every pixel that the surface covers the colour of its point.
/// \param colourOf   the colour of the point with this number
/// \param brightness of every pixel, from 0 to 1; empty where all have the full one
template <class ColourOf>
void paint(Image& image, const Surface& surface, const std::vector<float>& brightness,
           const ColourOf& colourOf) {
    for (std::size_t pixel = 0; pixel < image.Size().Pixels(); ++pixel) {
        if (!surface.IsCovered(pixel)) continue;
        const Colour colour = colourOf(surface.PointIndex(pixel));
        image[pixel] = brightness.empty() ? colour : colour.Darkened(brightness[pixel]);
    }
}

}  // namespace vpc::draw
