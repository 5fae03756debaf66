#pragma once

#include <string>

#include "draw/Image.h"
#include "draw/OverlayStyle.h"
#include "draw/Projection.h"

namespace vpc::draw {

/// Lays a scale bar over the picture's lower left corner: how long a round length of the world is
/// in the picture. In perspective that holds at the target's distance only, and the bar says so.
/// \param unit the world's unit, as it stands behind a number; may be empty
void drawScaleBar(Image& image, const Projection& projection, const std::string& unit,
                  const OverlayStyle& style);

}  // namespace vpc::draw
