#include "draw/Surface.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "draw/ClosingRadii.h"

namespace vpc::draw {

namespace {

/// The pixels of a square beside its middle one: as many columns as rows, and one more after the
/// middle where their number is even.
struct SquareReach {
    explicit SquareReach(float radius)
        : before((Side(radius) - 1) / 2), after(Side(radius) - 1 - before) {}
    /// For radii of at most DepthBuffer::margin.
    static int Side(float radius) { return static_cast<int>(std::lround(2.0F * radius)); }

    int before;
    int after;
};

/// Pixels that points cover: the smallest cell is what is seen. The upper half is the depth, the
/// lower half the pixel of the depth buffer that the point comes from.
class CoverBuffer {
public:
    /// \param cells memory for the buffer
    CoverBuffer(const ImageSize& size, std::vector<std::uint64_t>& cells)
        : size_(size), cells_(cells) {
        cells_.assign(size.Pixels(), empty);
    }

    /// \param column, row of the middle; may lie outside the picture
    /// \param fall how much deeper the disc is at a distance of one pixel from its middle
    void DrawDisc(int column, int row, float radius, float depth, float fall,
                  std::uint32_t source) {
        const int reach = static_cast<int>(radius);
        const int top = std::max(row - reach, 0);
        const int bottom = std::min(row + reach, size_.height - 1);
        for (int y = top; y <= bottom; ++y) {
            const auto down = static_cast<float>(y - row);
            const float square = radius * radius - down * down;
            const int half = static_cast<int>(std::sqrt(std::max(square, 0.0F)));
            DrawRow(y, row, column - half, column + half, column, depth, fall, source);
        }
    }
    void DrawSquare(int column, int row, const SquareReach& reach, float depth, float fall,
                    std::uint32_t source) {
        const int bottom = std::min(row + reach.after, size_.height - 1);
        for (int y = std::max(row - reach.before, 0); y <= bottom; ++y)
            DrawRow(y, row, column - reach.before, column + reach.after, column, depth, fall,
                    source);
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

    void DrawRow(int y, int row, int first, int last, int column, float depth, float fall,
                 std::uint32_t source) {
        const auto down = static_cast<float>(y - row);
        const int left = std::max(first, 0);
        const int right = std::min(last, size_.width - 1);
        std::uint64_t* const cells = &cells_[size_.Pixel(0, y)];
        for (int x = left; x <= right; ++x) {
            const auto across = static_cast<float>(x - column);
            Put(cells[x], depth + fall * (across * across + down * down), source);
        }
    }
    static void Put(std::uint64_t& cell, float depth, std::uint32_t source) {
        const std::uint64_t bits = std::bit_cast<std::uint32_t>(depth);
        cell = std::min(cell, bits << 32U | source);
    }

    ImageSize size_;
    std::vector<std::uint64_t>& cells_;
};

/// The radius of every point of a depth buffer.
class Radii {
public:
    Radii(const DepthBuffer& points, const Projection& projection, const PointSize& pointSize)
        : points_(points), projection_(projection), pointSize_(pointSize) {
        if (!pointSize.diameter) closing_ = closingRadii(points, projection);
    }
    float Of(std::size_t pixel) const {
        return pointSize_.diameter ? pointSize_.Radius(projection_, points_.Depth(pixel))
                                   : closing_[pixel];
    }

private:
    const DepthBuffer& points_;
    const Projection& projection_;
    const PointSize& pointSize_;
    std::vector<float> closing_;
};

void drawPoints(CoverBuffer& cover, const DepthBuffer& points, const Projection& projection,
                const Radii& radii, bool square) {
    const ImageSize& size = points.Size();
    for (int row = 0; row < size.height; ++row) {
        for (int column = 0; column < size.width; ++column) {
            const std::size_t pixel = size.Pixel(column, row);
            if (points.IsEmpty(pixel)) continue;
            const int x = column - DepthBuffer::margin;
            const int y = row - DepthBuffer::margin;
            const float depth = points.Depth(pixel);
            const float radius = radii.Of(pixel);
            const auto source = static_cast<std::uint32_t>(pixel);
            if (radius < 1.0F && !(square && radius >= 0.75F)) {
                cover.DrawPixel(x, y, depth, source);
                continue;
            }
            const auto side = static_cast<float>(projection.PixelSide(depth));
            const float fall = PointSize::rimDepth * side / radius;
            if (square)
                cover.DrawSquare(x, y, SquareReach(radius), depth, fall, source);
            else
                cover.DrawDisc(x, y, radius, depth, fall, source);
        }
    }
}

}  // namespace

void Surface::Draw(const DepthBuffer& points, const Projection& projection,
                   const PointSize& pointSize) {
    size_ = projection.Size();
    depths_.resize(size_.Pixels());
    indices_.resize(size_.Pixels());
    radii_.resize(size_.Pixels());
    const Radii radii(points, projection, pointSize);
    CoverBuffer cover(size_, cells_);
    drawPoints(cover, points, projection, radii, pointSize.square);
    for (std::size_t pixel = 0; pixel < size_.Pixels(); ++pixel) {
        indices_[pixel] = DepthBuffer::noPoint;
        if (cover.IsEmpty(pixel)) continue;
        const std::uint32_t source = cover.Source(pixel);
        depths_[pixel] = points.Depth(source);
        indices_[pixel] = points.PointIndex(source);
        radii_[pixel] = radii.Of(source);
    }
}

}  // namespace vpc::draw
