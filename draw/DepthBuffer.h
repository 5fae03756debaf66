#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "draw/Projection.h"

namespace vpc::draw {

/// Points as floats, so that they take little memory; as they lie beside other values in it.
struct FloatPoints {
    /// Three coordinates of the first point.
    const float* xyz = nullptr;
    /// What the depth buffer gives as the number of the first point, below noPoint.
    const std::uint32_t* number = nullptr;
    /// Bytes from a point to the next.
    std::size_t stride = 0;
    std::size_t count = 0;
    /// What the coordinates are relative to. It should be near the points.
    Point3 origin;
};

/// For every pixel the nearest of the points that fall into it. It keeps a margin around the
/// picture as well, since what is just outside may be drawn large enough to be seen.
///
/// Points may come in slices of any size and order: what is in the buffer in the end is the same.
class DepthBuffer {
public:
    /// In every direction, in pixels.
    static constexpr int margin = 64;
    /// What PointIndex gives where there is no point.
    static constexpr std::uint32_t noPoint = 0xFFFFFFFF;

    explicit DepthBuffer(const ImageSize& picture);

    /// Removes all points.
    void Clear();
    /// Adds points. Those behind the eye, outside the margin, or without a finite place are left
    /// out.
    /// \param projection the same for all points since Clear, for a picture of this buffer's size
    /// \param xyz        three coordinates of each point
    /// \param firstIndex number of the first point; the others follow, below noPoint
    void Add(const Projection& projection, const double* xyz, std::size_t count,
             std::uint32_t firstIndex);
    /// Adds the points at `first`, `first + step` and so on.
    void Add(const Projection& projection, const FloatPoints& points, std::size_t first,
             std::size_t step);

    /// The picture with its margin; the functions below count pixels in it.
    const ImageSize& Size() const { return size_; }
    bool IsEmpty(std::size_t pixel) const { return cells_[pixel] == emptyCell; }
    /// A positive number; not a number where the pixel is empty.
    float Depth(std::size_t pixel) const {
        return std::bit_cast<float>(static_cast<std::uint32_t>(cells_[pixel] >> 32U));
    }
    std::uint32_t PointIndex(std::size_t pixel) const {
        return static_cast<std::uint32_t>(cells_[pixel]);
    }

private:
    struct Block;
    class FloatCamera;

    static constexpr std::uint64_t emptyCell = ~0ULL;

    void Add(Block& block, std::size_t count);

    ImageSize size_;
    /// Depth in the upper half, as bits, which for positive numbers are ordered as the numbers; the
    /// point's number in the lower half. So the smallest cell is the nearest point. One cell more
    /// than there are pixels takes the points that are outside.
    std::vector<std::uint64_t> cells_;
};

}  // namespace vpc::draw
