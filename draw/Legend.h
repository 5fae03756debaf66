#pragma once

#include <string>

#include "draw/ColourRamp.h"
#include "draw/Image.h"
#include "draw/OverlayStyle.h"

namespace vpc::draw {

/// Lays a legend over the picture's lower right corner: what the colours stand for (`title`), and
/// the ramp with round values beside it.
void drawLegend(Image& image, const ColourRamp& ramp, const std::string& title,
                const OverlayStyle& style);

}  // namespace vpc::draw
