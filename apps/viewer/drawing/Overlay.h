#pragma once

#include <string>
#include <vector>

#include "draw/ColourRamp.h"
#include "draw/Image.h"
#include "viewer/camera/ViewCamera.h"
#include "viewer/document/ViewStyle.h"
#include "viewer/tools/Shapes.h"

namespace vpc::viewer {

/// What is laid over a picture of points: shapes, axes, scale bar and legends.
struct Overlay {
    struct Legend {
        std::string title;
        draw::ColourRamp ramp;
    };

    Shapes shapes;
    /// Side by side from the lower right corner.
    std::vector<Legend> legends;
    /// Of the drawing, as it stands behind a number; may be empty.
    std::string unit;

    /// \param style  says which of axes, scale bar and legends there are, and the background
    /// \param window the size that lines and letters are meant for; a picture that is higher than
    /// it
    ///               gets all of them larger by the same factor
    void LayOver(draw::Image& image, const ViewCamera& camera, const ViewStyle& style,
                 const draw::ImageSize& window) const;
};

}  // namespace vpc::viewer
