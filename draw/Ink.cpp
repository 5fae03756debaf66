#include "draw/Ink.h"

#include <algorithm>
#include <cmath>

#include "draw/StrokeFont.h"

namespace vpc::draw {

namespace {

/// The pixels from `low` to `high`, as far as there are `count` of them; the last is not included.
struct PixelSpan {
    PixelSpan(float low, float high, int count)
        : first(static_cast<int>(std::clamp(low, 0.0F, static_cast<float>(count)))),
          last(static_cast<int>(std::clamp(high + 1.0F, 0.0F, static_cast<float>(count)))) {}

    int first;
    int last;
};

float distanceToLine(float x, float y, float dx, float dy) {
    const float square = dx * dx + dy * dy;
    const float along = square > 0.0F ? std::clamp((x * dx + y * dy) / square, 0.0F, 1.0F) : 0.0F;
    return std::hypot(x - along * dx, y - along * dy);
}

}  // namespace

void Ink::Line(float x0, float y0, float x1, float y1, float width) {
    // A pixel is covered in part where its middle is within half a pixel of the line's edge.
    const float reach = width / 2.0F + 0.5F;
    const PixelSpan columns(std::min(x0, x1) - reach, std::max(x0, x1) + reach, size_.width);
    const PixelSpan rows(std::min(y0, y1) - reach, std::max(y0, y1) + reach, size_.height);
    for (int row = rows.first; row < rows.last; ++row) {
        for (int column = columns.first; column < columns.last; ++column) {
            const float x = static_cast<float>(column) + 0.5F - x0;
            const float y = static_cast<float>(row) + 0.5F - y0;
            float& coverage = coverage_[size_.Pixel(column, row)];
            const float inside = reach - distanceToLine(x, y, x1 - x0, y1 - y0);
            coverage = std::max(coverage, std::min(inside, 1.0F));
        }
    }
}

void Ink::Text(std::string_view text, float x, float y, float height, float width) {
    const float unit = height / StrokeFont::capitalHeight;
    for (const StrokeFont::Stroke& stroke : StrokeFont::Write(text)) {
        const auto* before = &stroke.front();
        for (const StrokeFont::Point& point : stroke) {
            Line(x + before->x * unit, y - before->y * unit, x + point.x * unit, y - point.y * unit,
                 width);
            before = &point;
        }
    }
}

float Ink::TextWidth(std::string_view text, float height) {
    return StrokeFont::Width(text) * height / StrokeFont::capitalHeight;
}

void Ink::LayOver(Image& image, const Colour& colour) const {
    for (std::size_t pixel = 0; pixel < coverage_.size(); ++pixel)
        if (coverage_[pixel] > 0.0F) image[pixel] = image[pixel].Mixed(colour, coverage_[pixel]);
}

}  // namespace vpc::draw
