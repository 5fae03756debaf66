#include "draw/DepthBuffer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace vpc::draw {

namespace {

/// Points that are projected together: few enough to stay in the fastest cache.
constexpr std::size_t blockSize = 512;

/// An eye further away than this many pixels is too far for floats that begin at it: they would err
/// by a hundredth of a pixel and more.
constexpr double farthestEye = 160'000.0;

/// How many points ahead memory is asked for. With a large step every point is in another line of
/// the cache, and the processor does not foresee which.
constexpr std::size_t pointsAhead = 16;

using Floats = std::array<float, blockSize>;

}  // namespace

/// A few points. A point outside the buffer has the pixel behind the last one.
struct DepthBuffer::Block {
    /// Columns, rows and depths; before they are projected x, y and z.
    Floats columns;
    Floats rows;
    Floats depths;
    std::array<std::uint32_t, blockSize> numbers;
    std::array<std::int32_t, blockSize> pixels;

    void TakeDoubles(const double* xyz, std::size_t count, const Point3& anchor,
                     std::uint32_t firstNumber) {
        for (std::size_t i = 0; i < count; ++i) {
            numbers[i] = firstNumber + static_cast<std::uint32_t>(i);
            columns[i] = static_cast<float>(xyz[3 * i] - anchor.x);
            rows[i] = static_cast<float>(xyz[3 * i + 1] - anchor.y);
            depths[i] = static_cast<float>(xyz[3 * i + 2] - anchor.z);
        }
    }
    void TakeFloats(const FloatPoints& points, std::size_t first, std::size_t step,
                    std::size_t count) {
        const auto* xyz = reinterpret_cast<const std::byte*>(points.xyz) + first * points.stride;
        const auto* number =
            reinterpret_cast<const std::byte*>(points.number) + first * points.stride;
        for (std::size_t i = 0; i < count; ++i) {
            if (i + pointsAhead < count)
                __builtin_prefetch(xyz + pointsAhead * step * points.stride);
            std::array<float, 3> point;
            std::memcpy(point.data(), xyz, sizeof(point));
            std::memcpy(&numbers[i], number, sizeof(numbers[i]));
            columns[i] = point[0];
            rows[i] = point[1];
            depths[i] = point[2];
            xyz += step * points.stride;
            number += step * points.stride;
        }
    }
    void FindPixels(std::size_t count, const ImageSize& size) {
        const auto width = static_cast<float>(size.width);
        const auto height = static_cast<float>(size.height);
        const auto outside = static_cast<std::int32_t>(size.Pixels());
        constexpr float largest = std::numeric_limits<float>::max();
        for (std::size_t i = 0; i < count; ++i) {
            // All comparisons with a NaN are false. Numbers in place of "and" leave no jumps.
            const bool inside = 6 == (columns[i] >= 0.0F) + (columns[i] < width) +
                                         (rows[i] >= 0.0F) + (rows[i] < height) +
                                         (depths[i] > 0.0F) + (depths[i] <= largest);
            const auto column = static_cast<std::int32_t>(inside ? columns[i] : 0.0F);
            const auto row = static_cast<std::int32_t>(inside ? rows[i] : 0.0F);
            pixels[i] = inside ? row * size.width + column : outside;
        }
    }
};

/// The camera in floats. Those of the points begin at an anchor, and the way there from the eye is
/// formed in doubles, so that a millimetre holds at coordinates of millions.
class DepthBuffer::FloatCamera {
public:
    FloatCamera(const Projection& projection, const ImageSize& buffer, const Point3& anchor)
        : right_(projection.GetCamera().right, anchor - projection.GetCamera().eye),
          up_(projection.GetCamera().up, anchor - projection.GetCamera().eye),
          ahead_(projection.GetCamera().ahead, anchor - projection.GetCamera().eye),
          perspective_(projection.GetCamera().perspective),
          scale_(static_cast<float>(perspective_ ? projection.FocalPixels() : projection.Scale())),
          middleColumn_(static_cast<float>(buffer.width) / 2.0F),
          middleRow_(static_cast<float>(buffer.height) / 2.0F) {}

    /// The anchor for points in doubles: the eye, or the target where the eye is too far away.
    static Point3 AnchorFor(const Projection& projection) {
        const Camera& camera = projection.GetCamera();
        if (projection.FocalPixels() <= farthestEye) return camera.eye;
        return camera.eye + camera.ahead * camera.targetDistance;
    }

    void Project(Block& block, std::size_t count) const {
        for (std::size_t i = 0; i < count; ++i) {
            const float x = block.columns[i], y = block.rows[i], z = block.depths[i];
            block.columns[i] = right_.Of(x, y, z);
            block.rows[i] = up_.Of(x, y, z);
            block.depths[i] = ahead_.Of(x, y, z);
        }
        for (std::size_t i = 0; i < count; ++i) {
            const float scale = perspective_ ? scale_ / block.depths[i] : scale_;
            block.columns[i] = middleColumn_ + block.columns[i] * scale;
            block.rows[i] = middleRow_ - block.rows[i] * scale;
        }
    }

private:
    /// How far points lie in a direction from the eye.
    struct Axis {
        Axis(const Point3& direction, const Point3& eyeToAnchor)
            : x(static_cast<float>(direction.x)),
              y(static_cast<float>(direction.y)),
              z(static_cast<float>(direction.z)),
              anchor(static_cast<float>(direction.Dot(eyeToAnchor))) {}
        float Of(float px, float py, float pz) const { return x * px + y * py + z * pz + anchor; }

        float x, y, z, anchor;
    };

    Axis right_, up_, ahead_;
    bool perspective_;
    float scale_, middleColumn_, middleRow_;
};

DepthBuffer::DepthBuffer(const ImageSize& picture)
    : size_{picture.width + 2 * margin, picture.height + 2 * margin},
      cells_(size_.Pixels() + 1, emptyCell) {
}

void DepthBuffer::Clear() {
    std::fill(cells_.begin(), cells_.end(), emptyCell);
}

void DepthBuffer::Add(const Projection& projection, const double* xyz, std::size_t count,
                      std::uint32_t firstIndex) {
    const Point3 anchor = FloatCamera::AnchorFor(projection);
    const FloatCamera camera(projection, size_, anchor);
    Block block;
    for (std::size_t done = 0; done < count; done += blockSize) {
        const std::size_t now = std::min(blockSize, count - done);
        block.TakeDoubles(xyz + 3 * done, now, anchor,
                          firstIndex + static_cast<std::uint32_t>(done));
        camera.Project(block, now);
        Add(block, now);
    }
    cells_.back() = emptyCell;
}

void DepthBuffer::Add(const Projection& projection, const FloatPoints& points, std::size_t first,
                      std::size_t step) {
    const FloatCamera camera(projection, size_, points.origin);
    Block block;
    while (first < points.count) {
        const std::size_t now = std::min(blockSize, (points.count - first - 1) / step + 1);
        block.TakeFloats(points, first, step, now);
        camera.Project(block, now);
        Add(block, now);
        first += now * step;
    }
    cells_.back() = emptyCell;
}

void DepthBuffer::Add(Block& block, std::size_t count) {
    block.FindPixels(count, size_);
    for (std::size_t i = 0; i < count; ++i) {
        const auto next =
            static_cast<std::size_t>(block.pixels[std::min(i + pointsAhead, count - 1)]);
        __builtin_prefetch(&cells_[next], 1);
        const std::uint64_t depth = std::bit_cast<std::uint32_t>(block.depths[i]);
        const std::uint64_t key = depth << 32U | block.numbers[i];
        std::uint64_t& cell = cells_[static_cast<std::size_t>(block.pixels[i])];
        if (key < cell) cell = key;
    }
}

}  // namespace vpc::draw
