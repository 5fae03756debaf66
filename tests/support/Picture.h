#pragma once

#include <png.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace vpc::test {

/// The pixels of a PNG file; throws for what is none.
class Picture {
public:
    using Colour = std::array<std::uint8_t, 3>;

    explicit Picture(const std::string& bytes) {
        png_image image = {};
        image.version = PNG_IMAGE_VERSION;
        if (png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) == 0)
            throw std::runtime_error(image.message);
        image.format = PNG_FORMAT_RGB;
        width = image.width;
        height = image.height;
        pixels_.resize(width * height);
        if (png_image_finish_read(&image, nullptr, pixels_.data(), 0, nullptr) == 0)
            throw std::runtime_error(image.message);
    }

    const Colour& at(std::size_t column, std::size_t row) const {
        return pixels_.at(row * width + column);
    }
    /// How many pixels have that colour; `left` to `bottom` become the box around them.
    std::size_t count(const Colour& colour) {
        left = width, right = 0, top = height, bottom = 0;
        std::size_t found = 0;
        for (std::size_t i = 0; i < pixels_.size(); ++i) {
            if (pixels_[i] != colour) continue;
            ++found;
            left = std::min(left, i % width), right = std::max(right, i % width);
            top = std::min(top, i / width), bottom = std::max(bottom, i / width);
        }
        return found;
    }
    double middleColumn() const { return static_cast<double>(left + right) / 2; }
    double middleRow() const { return static_cast<double>(top + bottom) / 2; }

    std::size_t width = 0, height = 0;
    std::size_t left = 0, right = 0, top = 0, bottom = 0;

private:
    std::vector<Colour> pixels_;
};

}  // namespace vpc::test
