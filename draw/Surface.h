#pragma once

#include <cstdint>
#include <vector>

#include "draw/DepthBuffer.h"
#include "draw/PointSize.h"
#include "draw/Projection.h"

namespace vpc::draw {

/// What is seen when every point of a depth buffer is drawn as a disc or a square: depth and point
/// of every pixel of the picture, without the buffer's margin.
class Surface {
public:
    Surface() = default;
    Surface(const DepthBuffer& points, const Projection& projection, const PointSize& pointSize) {
        Draw(points, projection, pointSize);
    }
    /// Forgets what was seen before, but for the memory that it took.
    void Draw(const DepthBuffer& points, const Projection& projection, const PointSize& pointSize);

    const ImageSize& Size() const { return size_; }
    bool IsCovered(std::size_t pixel) const { return PointIndex(pixel) != DepthBuffer::noPoint; }
    /// Only where a pixel is covered.
    float Depth(std::size_t pixel) const { return depths_[pixel]; }
    /// The number of the point that is seen; DepthBuffer::noPoint where there is none.
    std::uint32_t PointIndex(std::size_t pixel) const { return indices_[pixel]; }
    /// The radius in pixels of the disc, or half the side of the square, that covers the pixel.
    float Radius(std::size_t pixel) const { return radii_[pixel]; }

private:
    ImageSize size_{0, 0};
    /// Used while points are drawn.
    std::vector<std::uint64_t> cells_;
    std::vector<float> depths_;
    std::vector<std::uint32_t> indices_;
    std::vector<float> radii_;
};

}  // namespace vpc::draw
