#include "draw/OverlayStyle.h"

#include <algorithm>
#include <cmath>

namespace vpc::draw {

namespace {

/// The text is a share of the picture's shorter side, but always readable.
constexpr float sidesPerText = 75.0F;
constexpr float smallestText = 7.0F;
constexpr float largestText = 60.0F;
constexpr float panelCover = 0.7F;

constexpr Colour nearlyWhite{240, 243, 246};
constexpr Colour nearlyBlack{24, 28, 33};

bool isDark(const Colour& colour) {
    return colour.Luminance() < 128.0F;
}

int pixelOf(float position, int count) {
    return static_cast<int>(std::clamp(std::round(position), 0.0F, static_cast<float>(count)));
}

}  // namespace

OverlayStyle::OverlayStyle(const ImageSize& size, const Colour& background)
    : textHeight(std::clamp(static_cast<float>(std::min(size.width, size.height)) / sidesPerText,
                            smallestText, largestText)),
      lineWidth(textHeight / 6.5F),
      space(textHeight),
      ink(isDark(background) ? nearlyWhite : nearlyBlack),
      panel(background) {
}

OverlayStyle OverlayStyle::Enlarged(float factor) const {
    OverlayStyle style = *this;
    style.textHeight *= factor;
    style.lineWidth *= factor;
    style.space *= factor;
    return style;
}

void Rectangle::Cover(Image& image, const Colour& colour) const {
    const ImageSize& size = image.Size();
    for (int row = pixelOf(top, size.height); row < pixelOf(Bottom(), size.height); ++row) {
        for (int column = pixelOf(left, size.width); column < pixelOf(Right(), size.width);
             ++column) {
            Colour& pixel = image[size.Pixel(column, row)];
            pixel = pixel.Mixed(colour, panelCover);
        }
    }
}

}  // namespace vpc::draw
