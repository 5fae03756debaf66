#pragma once

#include "draw/Colour.h"

namespace vpc::viewer {

enum class PointSizing {
    /// As large as closes the surfaces.
    Automatic,
    /// In pixels.
    Fixed,
    /// In drawing units, so that near points are larger.
    ByDistance,
};

/// How points and what lies over them are drawn.
struct ViewStyle {
    PointSizing sizing = PointSizing::Automatic;
    /// Pixels, 1 to 64, or drawing units above 0; without a meaning for automatic sizes.
    double pointSize = 2.0;
    /// Otherwise points are squares.
    bool roundPoints = true;
    /// Eye-dome shading.
    bool shaded = true;
    draw::Colour background{24, 26, 30};
    bool axes = true;
    bool scaleBar = true;
    bool legend = true;

    bool operator==(const ViewStyle&) const = default;
};

}  // namespace vpc::viewer
