#pragma once

#include <cstddef>
#include <optional>

#include "draw/PointSize.h"
#include "viewer/document/ViewStyle.h"

namespace vpc::viewer {

/// The size of points whose neighbours are `spacing` apart, when a share of them is drawn.
/// \param share above 0, up to 1
draw::PointSize pointSizeOf(const ViewStyle& style, double spacing, double share);

}  // namespace vpc::viewer
