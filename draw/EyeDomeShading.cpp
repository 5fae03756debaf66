#include "draw/EyeDomeShading.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vpc::draw {

namespace {

/// How dark the bottom of a deep hollow is drawn.
constexpr float strength = 0.75F;
/// A neighbour that is nearer by this many pixels' sides counts half as much as a very near one.
constexpr float halfway = 2.0F;
/// Pixels between a pixel and those that it is compared with, in radii of its disc.
constexpr float reachInRadii = 2.0F;
constexpr int leastReach = 2;
constexpr int mostReach = 40;

/// Half of the directions around a pixel; the others are their opposites.
constexpr std::array<std::array<int, 2>, 4> directions = {{{1, 0}, {0, 1}, {1, 1}, {1, -1}}};

/// Nearness is a measure that is linear in the picture on every plane: the reciprocal of the depth
/// in perspective, the negative depth in parallel projection.
class NearnessMap {
public:
    NearnessMap(const Surface& surface, const Projection& projection)
        : size_(surface.Size()),
          perspective_(projection.GetCamera().perspective),
          gain_(static_cast<float>(perspective_ ? projection.FocalPixels() : projection.Scale())),
          values_(size_.Pixels(), nothing) {
        for (std::size_t pixel = 0; pixel < values_.size(); ++pixel)
            if (surface.IsCovered(pixel))
                values_[pixel] = perspective_ ? 1.0F / surface.Depth(pixel) : -surface.Depth(pixel);
    }

    /// How far, in sides of a pixel and per pixel of `reach`, the mean of two opposite neighbours
    /// comes nearer to the eye than the pixel itself; 0 where it does not, or there is none.
    float Rise(int column, int row, float own, int dx, int dy) const {
        const float a = Value(column + dx, row + dy);
        const float b = Value(column - dx, row - dy);
        if (a == nothing || b == nothing) return 0.0F;
        const float rise = (a + b - 2.0F * own) * (perspective_ ? gain_ / own : gain_);
        return std::max(rise, 0.0F);
    }
    static bool IsNothing(float value) { return value == nothing; }
    float Value(int column, int row) const {
        if (column < 0 || column >= size_.width || row < 0 || row >= size_.height) return nothing;
        return values_[size_.Pixel(column, row)];
    }

private:
    /// No depth has this nearness.
    static constexpr float nothing = 3e38F;

    ImageSize size_;
    bool perspective_;
    float gain_;
    std::vector<float> values_;
};

}  // namespace

std::vector<float> eyeDomeShading(const Surface& surface, const Projection& projection) {
    const NearnessMap map(surface, projection);
    const ImageSize& size = surface.Size();
    std::vector<float> brightness(size.Pixels(), 1.0F);
    for (int row = 0; row < size.height; ++row) {
        for (int column = 0; column < size.width; ++column) {
            const std::size_t pixel = size.Pixel(column, row);
            if (!surface.IsCovered(pixel)) continue;
            const float own = map.Value(column, row);
            const int reach = std::clamp(static_cast<int>(reachInRadii * surface.Radius(pixel)),
                                         leastReach, mostReach);
            float darkness = 0.0F;
            for (const auto& [dx, dy] : directions) {
                const float rise =
                    map.Rise(column, row, own, dx * reach, dy * reach) / static_cast<float>(reach);
                darkness += rise / (rise + halfway);
            }
            brightness[pixel] = 1.0F - strength * darkness / static_cast<float>(directions.size());
        }
    }
    return brightness;
}

}  // namespace vpc::draw
