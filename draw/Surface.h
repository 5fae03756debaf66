#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "draw/DepthBuffer.h"
#include "draw/Projection.h"

namespace vpc::draw {

/// What is seen when every point of a depth buffer is drawn as a disc: depth and point of every
/// pixel of the picture, without the buffer's margin.
class Surface {
public:
    /// \param diameter of every disc in pixels, 1 to largestDiameter; without it each has the size
    ///                 that closes the surface that it lies on
    Surface(const DepthBuffer& points, const Projection& projection,
            std::optional<double> diameter = std::nullopt);

    static constexpr double largestDiameter = 2.0 * DepthBuffer::margin;

    const ImageSize& Size() const { return size_; }
    bool IsCovered(std::size_t pixel) const { return PointIndex(pixel) != DepthBuffer::noPoint; }
    /// Only where a pixel is covered.
    float Depth(std::size_t pixel) const { return depths_[pixel]; }
    /// The number of the point that is seen; DepthBuffer::noPoint where there is none.
    std::uint32_t PointIndex(std::size_t pixel) const { return indices_[pixel]; }
    /// The radius in pixels of the disc that covers the pixel.
    float Radius(std::size_t pixel) const { return radii_[pixel]; }

private:
    ImageSize size_;
    std::vector<float> depths_;
    std::vector<std::uint32_t> indices_;
    std::vector<float> radii_;
};

}  // namespace vpc::draw
