#pragma once

#include "draw/Colour.h"
#include "draw/Image.h"

namespace vpc::draw {

/// How large and in which colours the legend and the scale bar are drawn. Lengths are in pixels.
struct OverlayStyle {
    OverlayStyle(const ImageSize& size, const Colour& background);
    /// The same for a picture that is larger by a factor.
    OverlayStyle Enlarged(float factor) const;

    /// Of a capital letter.
    float textHeight;
    float lineWidth;
    /// From the edge of the picture to a panel, and from there to what is on it.
    float space;
    /// Of lines and letters: light on a dark background and dark on a light one.
    Colour ink;
    /// What is behind them.
    Colour panel;
};

/// A rectangle in pixels.
struct Rectangle {
    float left = 0.0F;
    float top = 0.0F;
    float width = 0.0F;
    float height = 0.0F;

    float Right() const { return left + width; }
    float Bottom() const { return top + height; }
    /// Lays a colour over the rectangle; the picture below shows through a little.
    void Cover(Image& image, const Colour& colour) const;
};

}  // namespace vpc::draw
