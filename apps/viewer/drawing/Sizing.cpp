#include "viewer/drawing/Sizing.h"

#include <algorithm>
#include <cmath>

namespace vpc::viewer {

namespace {

/// Discs of this many spacings close a surface of random points but for a few holes.
constexpr double closingSpacings = 2.0;

}  // namespace

draw::PointSize pointSizeOf(const ViewStyle& style, double spacing, double share) {
    draw::PointSize size;
    size.square = !style.roundPoints;
    if (style.sizing == PointSizing::Automatic) {
        // Points on a surface are further apart by the root of what is left out.
        size.inWorld = true;
        size.diameter = closingSpacings * spacing / std::sqrt(share);
    } else {
        size.inWorld = style.sizing == PointSizing::ByDistance;
        size.diameter = style.pointSize;
    }
    if (!(*size.diameter > 0.0) || !std::isfinite(*size.diameter)) {
        size.inWorld = false;
        size.diameter = ViewStyle{}.pointSize;
    }
    return size;
}

}  // namespace vpc::viewer
