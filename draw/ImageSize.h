#pragma once

#include <cstddef>

namespace vpc::draw {

/// Width and height of a picture in pixels, each 1 or more. Pixels are numbered by rows from the
/// top left corner.
struct ImageSize {
    int width = 1;
    int height = 1;

    std::size_t Pixels() const {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
    std::size_t Pixel(int column, int row) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(column);
    }
    bool operator==(const ImageSize&) const = default;
};

}  // namespace vpc::draw
