#pragma once

#include <string>

#include "draw/ColourRamp.h"
#include "draw/Image.h"
#include "draw/OverlayStyle.h"

namespace vpc::draw {

/// Lays a legend over the picture's lower right corner: what the colours stand for (`title`), and
/// the ramp with round values beside it. Returns the room that it takes.
/// \param right what is left free at the picture's right edge, in pixels, for other legends
Rectangle drawLegend(Image& image, const ColourRamp& ramp, const std::string& title,
                     const OverlayStyle& style, float right = 0.0F);

}  // namespace vpc::draw
