#pragma once

#include <functional>
#include <string>

#include "viewer/drawing/Overlay.h"
#include "viewer/drawing/PointRenderer.h"
#include "viewer/window/UpdateLoop.h"

namespace vpc::viewer {

/// A picture of the view, saved as PNG.
struct Screenshot {
    std::string file;
    draw::ImageSize size;
    /// The window's picture, which letters and lines are meant for.
    draw::ImageSize window;
    ViewCamera camera;
    ViewStyle style;
    Overlay overlay;

    /// Has the picture drawn and saved, beside the window's thread.
    /// \param renderer what is going to draw it
    /// \param done     gets a sentence where that failed, an empty text otherwise
    void Take(const PointRenderer& renderer, UpdateLoop& updates,
              std::function<void(const std::string& problem)> done) const;
};

}  // namespace vpc::viewer
