#pragma once

#include <string_view>
#include <vector>

#include "draw/Image.h"

namespace vpc::draw {

/// Lines and text to be laid over a picture in one colour, with smooth edges. Lengths are in
/// pixels; whole numbers are the left and upper edges of pixels.
class Ink {
public:
    /// With round ends. A line whose numbers are not all finite is left out.
    void Line(float x0, float y0, float x1, float y1, float width);
    /// \param height of a capital letter
    /// \param x, y   where the line of text begins, on the letters' feet
    void Text(std::string_view text, float x, float y, float height, float width);
    static float TextWidth(std::string_view text, float height);
    void LayOver(Image& image, const Colour& colour) const;

private:
    struct Stroke {
        float x0, y0, x1, y1;
        float width;
    };
    class Band;

    std::vector<Stroke> strokes_;
};

}  // namespace vpc::draw
