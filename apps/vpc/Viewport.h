#pragma once

#include <string>

namespace vpc {

/// The size of a window or picture in pixels.
struct Viewport {
    /// More than any screen has; keeps the memory for a picture within reason.
    static constexpr int largestSide = 16384;

    int width = 1280;
    int height = 800;

    /// \param text "1280,800" or "1280x800". Throws CommandUsageError, which names `option`, for
    /// anything but two whole numbers from 1 to largestSide.
    static Viewport Parse(const std::string& text, const std::string& option);
};

}  // namespace vpc
