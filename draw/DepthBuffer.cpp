#include "draw/DepthBuffer.h"

#include <algorithm>
#include <array>
#include <limits>

namespace vpc::draw {

namespace {

/// Points that are projected together: few enough to stay in the fastest cache.
constexpr std::size_t blockSize = 512;

/// The camera in floats, with the eye as the origin. The difference to the eye is formed in
/// doubles, so that a millimetre holds at coordinates of millions.
class FloatProjection {
public:
    FloatProjection(const Projection& projection, const ImageSize& buffer)
        : eye_(projection.GetCamera().eye),
          right_(projection.GetCamera().right),
          up_(projection.GetCamera().up),
          ahead_(projection.GetCamera().ahead),
          perspective_(projection.GetCamera().perspective),
          scale_(static_cast<float>(perspective_ ? projection.FocalPixels() : projection.Scale())),
          middleColumn_(static_cast<float>(buffer.width) / 2.0F),
          middleRow_(static_cast<float>(buffer.height) / 2.0F) {}

    void Project(const double* xyz, std::size_t count, float* columns, float* rows,
                 float* depths) const {
        for (std::size_t i = 0; i < count; ++i) {
            const auto x = static_cast<float>(xyz[3 * i] - eye_.x);
            const auto y = static_cast<float>(xyz[3 * i + 1] - eye_.y);
            const auto z = static_cast<float>(xyz[3 * i + 2] - eye_.z);
            columns[i] = right_.x * x + right_.y * y + right_.z * z;
            rows[i] = up_.x * x + up_.y * y + up_.z * z;
            depths[i] = ahead_.x * x + ahead_.y * y + ahead_.z * z;
        }
        for (std::size_t i = 0; i < count; ++i) {
            const float scale = perspective_ ? scale_ / depths[i] : scale_;
            columns[i] = middleColumn_ + columns[i] * scale;
            rows[i] = middleRow_ - rows[i] * scale;
        }
    }

private:
    struct Direction {
        explicit Direction(const Point3& p)
            : x(static_cast<float>(p.x)), y(static_cast<float>(p.y)), z(static_cast<float>(p.z)) {}
        float x, y, z;
    };

    Point3 eye_;
    Direction right_, up_, ahead_;
    bool perspective_;
    float scale_, middleColumn_, middleRow_;
};

}  // namespace

/// Pixels and depths of a few points; a point outside has the pixel behind the last one.
struct DepthBuffer::Block {
    std::array<float, blockSize> columns;
    std::array<float, blockSize> rows;
    std::array<float, blockSize> depths;
    std::array<std::int32_t, blockSize> pixels;

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

DepthBuffer::DepthBuffer(const ImageSize& picture)
    : size_{picture.width + 2 * margin, picture.height + 2 * margin},
      cells_(size_.Pixels() + 1, emptyCell) {
}

void DepthBuffer::Clear() {
    std::fill(cells_.begin(), cells_.end(), emptyCell);
}

void DepthBuffer::Add(const Projection& projection, const double* xyz, std::size_t count,
                      std::uint32_t firstIndex) {
    const FloatProjection floats(projection, size_);
    Block block;
    for (std::size_t done = 0; done < count; done += blockSize) {
        const std::size_t now = std::min(blockSize, count - done);
        floats.Project(xyz + 3 * done, now, block.columns.data(), block.rows.data(),
                       block.depths.data());
        block.FindPixels(now, size_);
        Add(block, now, firstIndex + static_cast<std::uint32_t>(done));
    }
    cells_.back() = emptyCell;
}

void DepthBuffer::Add(const Block& block, std::size_t count, std::uint32_t firstIndex) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint64_t depth = std::bit_cast<std::uint32_t>(block.depths[i]);
        const std::uint64_t key = depth << 32U | (firstIndex + static_cast<std::uint32_t>(i));
        std::uint64_t& cell = cells_[static_cast<std::size_t>(block.pixels[i])];
        if (key < cell) cell = key;
    }
}

}  // namespace vpc::draw
