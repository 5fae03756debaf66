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

/// Some rows of a picture, and how much of each of their pixels is covered: 0 to 1. So few rows
/// stay in a fast cache.
class Ink::Band {
public:
    static constexpr int rows = 32;

    explicit Band(const ImageSize& size)
        : size_(size),
          coverage_(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(rows)) {}

    void Begin(int top) {
        top_ = top;
        bottom_ = std::min(top + rows, size_.height);
        left_ = size_.width;
        right_ = 0;
    }
    void Cover(const Stroke& stroke) {
        const auto [x0, y0, x1, y1, width] = stroke;
        // A pixel is covered in part where its middle is within half a pixel of the line's edge.
        const float reach = width / 2.0F + 0.5F;
        const PixelSpan span(std::min(y0, y1) - reach, std::max(y0, y1) + reach, size_.height);
        for (int row = std::max(span.first, top_); row < std::min(span.last, bottom_); ++row) {
            const float y = static_cast<float>(row) + 0.5F - y0;
            const PixelSpan columns = ColumnsNear(stroke, y, reach);
            for (int column = columns.first; column < columns.last; ++column) {
                const float x = static_cast<float>(column) + 0.5F - x0;
                float& coverage = coverage_[Index(column, row)];
                const float inside = reach - distanceToLine(x, y, x1 - x0, y1 - y0);
                coverage = std::max(coverage, std::min(inside, 1.0F));
            }
            left_ = std::min(left_, columns.first);
            right_ = std::max(right_, columns.last);
        }
    }
    /// Leaves the band without a trace of what covered it.
    void LayOver(Image& image, const Colour& colour) {
        for (int row = top_; row < bottom_; ++row) {
            for (int column = left_; column < right_; ++column) {
                float& coverage = coverage_[Index(column, row)];
                if (!(coverage > 0.0F)) continue;
                Colour& pixel = image[size_.Pixel(column, row)];
                pixel = pixel.Mixed(colour, coverage);
                coverage = 0.0F;
            }
        }
    }

private:
    std::size_t Index(int column, int row) const {
        return size_.Pixel(column, row) - size_.Pixel(0, top_);
    }
    /// The columns of a row, which lies at `y` from the line's beginning, that may be covered.
    PixelSpan ColumnsNear(const Stroke& stroke, float y, float reach) const {
        const float dx = stroke.x1 - stroke.x0;
        const float dy = stroke.y1 - stroke.y0;
        float from = 0.0F;
        float to = 1.0F;
        // Flatter lines are near to most of their columns in each of their few rows.
        if (std::abs(dy) > 1.0F) {
            const float a = (y - reach) / dy;
            const float b = (y + reach) / dy;
            from = std::clamp(std::min(a, b), 0.0F, 1.0F);
            to = std::clamp(std::max(a, b), 0.0F, 1.0F);
        }
        const float x = stroke.x0 + std::min(from * dx, to * dx);
        const float last = stroke.x0 + std::max(from * dx, to * dx);
        return {x - reach - 1.0F, last + reach + 1.0F, size_.width};
    }

    ImageSize size_;
    int top_ = 0;
    int bottom_ = 0;
    /// The columns that anything may cover.
    int left_ = 0;
    int right_ = 0;
    std::vector<float> coverage_;
};

void Ink::Line(float x0, float y0, float x1, float y1, float width) {
    const bool isFinite = std::isfinite(x0) && std::isfinite(y0) && std::isfinite(x1) &&
                          std::isfinite(y1) && std::isfinite(width);
    if (isFinite) strokes_.push_back({x0, y0, x1, y1, width});
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
    Band band(image.Size());
    for (int top = 0; top < image.Size().height; top += Band::rows) {
        band.Begin(top);
        for (const Stroke& stroke : strokes_) band.Cover(stroke);
        band.LayOver(image, colour);
    }
}

}  // namespace vpc::draw
