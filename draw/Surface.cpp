#include "draw/Surface.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "draw/ClosingRadii.h"

namespace vpc::draw {

namespace {

/// Discs fall back towards their rim like a bowl turned over, so that of two neighbours on one
/// surface each shows the half that is nearer to it. At the rim a disc has fallen back by its
/// radius times this.
constexpr float rimDepth = 1.5F;

/// Pixels that discs cover: the smallest cell is what is seen. The upper half is the depth, the
/// lower half the pixel of the depth buffer that the disc comes from.
class DiscBuffer {
public:
    explicit DiscBuffer(const ImageSize& size) : size_(size), cells_(size.Pixels(), empty) {}

    /// \param column, row of the middle; may lie outside the picture
    /// \param fall how much deeper the disc is at a distance of one pixel from its middle
    void Draw(int column, int row, float radius, float depth, float fall, std::uint32_t source) {
        const int reach = static_cast<int>(radius);
        const int top = std::max(row - reach, 0);
        const int bottom = std::min(row + reach, size_.height - 1);
        for (int y = top; y <= bottom; ++y) {
            const auto down = static_cast<float>(y - row);
            const float square = radius * radius - down * down;
            const int half = static_cast<int>(std::sqrt(std::max(square, 0.0F)));
            const int left = std::max(column - half, 0);
            const int right = std::min(column + half, size_.width - 1);
            std::uint64_t* const cells = &cells_[size_.Pixel(0, y)];
            for (int x = left; x <= right; ++x) {
                const auto across = static_cast<float>(x - column);
                Put(cells[x], depth + fall * (across * across + down * down), source);
            }
        }
    }
    void DrawPixel(int column, int row, float depth, std::uint32_t source) {
        if (column < 0 || column >= size_.width || row < 0 || row >= size_.height) return;
        Put(cells_[size_.Pixel(column, row)], depth, source);
    }

    bool IsEmpty(std::size_t pixel) const { return cells_[pixel] == empty; }
    std::uint32_t Source(std::size_t pixel) const {
        return static_cast<std::uint32_t>(cells_[pixel]);
    }

private:
    static constexpr std::uint64_t empty = ~0ULL;

    static void Put(std::uint64_t& cell, float depth, std::uint32_t source) {
        const std::uint64_t bits = std::bit_cast<std::uint32_t>(depth);
        cell = std::min(cell, bits << 32U | source);
    }

    ImageSize size_;
    std::vector<std::uint64_t> cells_;
};

DiscBuffer drawDiscs(const DepthBuffer& points, const Projection& projection,
                     const std::vector<float>& radii) {
    DiscBuffer discs(projection.Size());
    const ImageSize& size = points.Size();
    for (int row = 0; row < size.height; ++row) {
        for (int column = 0; column < size.width; ++column) {
            const std::size_t pixel = size.Pixel(column, row);
            if (points.IsEmpty(pixel)) continue;
            const int x = column - DepthBuffer::margin;
            const int y = row - DepthBuffer::margin;
            const float depth = points.Depth(pixel);
            const float radius = radii[pixel];
            const auto source = static_cast<std::uint32_t>(pixel);
            if (radius < 1.0F) {
                discs.DrawPixel(x, y, depth, source);
            } else {
                const auto side = static_cast<float>(projection.PixelSide(depth));
                discs.Draw(x, y, radius, depth, rimDepth * side / radius, source);
            }
        }
    }
    return discs;
}

}  // namespace

Surface::Surface(const DepthBuffer& points, const Projection& projection,
                 std::optional<double> diameter)
    : size_(projection.Size()),
      depths_(size_.Pixels()),
      indices_(size_.Pixels(), DepthBuffer::noPoint),
      radii_(size_.Pixels()) {
    const std::vector<float> radii =
        diameter ? std::vector<float>(points.Size().Pixels(), static_cast<float>(*diameter) / 2.0F)
                 : closingRadii(points, projection);
    const DiscBuffer discs = drawDiscs(points, projection, radii);
    for (std::size_t pixel = 0; pixel < size_.Pixels(); ++pixel) {
        if (discs.IsEmpty(pixel)) continue;
        const std::uint32_t source = discs.Source(pixel);
        depths_[pixel] = points.Depth(source);
        indices_[pixel] = points.PointIndex(source);
        radii_[pixel] = radii[source];
    }
}

}  // namespace vpc::draw
