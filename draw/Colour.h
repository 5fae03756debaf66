#pragma once

#include <algorithm>
#include <cstdint>

namespace vpc::draw {

struct Colour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    bool operator==(const Colour&) const = default;

    /// Every channel times `factor`, from 0 to 1.
    Colour Darkened(float factor) const { return Colour{}.Mixed(*this, factor); }
    /// This colour at `share` 0, the other one at 1.
    Colour Mixed(const Colour& other, float share) const {
        const auto mix = [share](std::uint8_t a, std::uint8_t b) {
            const float value = static_cast<float>(a) + share * static_cast<float>(b - a);
            return static_cast<std::uint8_t>(std::clamp(value + 0.5F, 0.0F, 255.0F));
        };
        return {mix(red, other.red), mix(green, other.green), mix(blue, other.blue)};
    }
    /// How bright it looks, 0 to 255.
    float Luminance() const {
        return 0.2125F * static_cast<float>(red) + 0.7154F * static_cast<float>(green) +
               0.0721F * static_cast<float>(blue);
    }
};

}  // namespace vpc::draw
