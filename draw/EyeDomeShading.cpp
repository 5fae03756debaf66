#include "draw/EyeDomeShading.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

namespace vpc::draw {

namespace {

using namespace eye_dome;

/// Half of the directions around a pixel; the others are their opposites.
constexpr std::array<std::array<int, 2>, 4> directions = {{{1, 0}, {0, 1}, {1, 1}, {1, -1}}};

/// Shades one pixel after the other by their nearness. This is a measure that is linear in the
/// picture on every plane: the reciprocal of the depth in perspective, the negative depth in
/// parallel projection.
class Shader {
public:
    Shader(const Surface& surface, const Projection& projection)
        : surface_(surface),
          size_(surface.Size()),
          perspective_(projection.GetCamera().perspective),
          pixels_(static_cast<float>(perspective_ ? projection.FocalPixels() : projection.Scale())),
          nearness_(size_.Pixels(), nothing) {
        for (std::size_t pixel = 0; pixel < nearness_.size(); ++pixel)
            if (surface.IsCovered(pixel)) nearness_[pixel] = Nearness(surface.Depth(pixel));
    }

    /// How dark a covered pixel is, 0 to 1.
    float Darkness(int column, int row) const {
        const std::size_t pixel = size_.Pixel(column, row);
        const int wanted = std::clamp(static_cast<int>(reachInRadii * surface_.Radius(pixel)),
                                      leastReach, mostReach);
        // At the picture's edge one looks less far. Within a disc there is nothing to be seen, so
        // there the other directions have to tell.
        const int across = std::min({wanted, column, size_.width - 1 - column});
        const int down = std::min({wanted, row, size_.height - 1 - row});
        float sum = 0.0F;
        float count = 0.0F;
        for (const auto& [dx, dy] : directions) {
            const int reach = dx == 0 ? down : dy == 0 ? across : std::min(across, down);
            if (2 * reach < wanted) continue;
            const float rise =
                Rise(pixel, dx * reach + dy * reach * size_.width) / static_cast<float>(reach);
            // Beyond the range of floats there is only one answer.
            sum += rise < beyondAll ? rise / (rise + halfway) : 1.0F;
            count += 1.0F;
        }
        return count > 0.0F ? sum / count : 0.0F;
    }

private:
    /// No depth has this nearness.
    static constexpr float nothing = std::numeric_limits<float>::max();

    float Nearness(float depth) const { return perspective_ ? 1.0F / depth : -depth; }
    /// How far, in sides of a pixel, the mean of two opposite neighbours comes nearer to the eye
    /// than the pixel itself; 0 where it does not, or one of them is not covered.
    float Rise(std::size_t pixel, std::ptrdiff_t offset) const {
        const float a =
            nearness_[static_cast<std::size_t>(static_cast<std::ptrdiff_t>(pixel) + offset)];
        const float b =
            nearness_[static_cast<std::size_t>(static_cast<std::ptrdiff_t>(pixel) - offset)];
        if (a == nothing || b == nothing) return 0.0F;
        const float own = nearness_[pixel];
        return std::max(a + b - 2.0F * own, 0.0F) * (perspective_ ? pixels_ / own : pixels_);
    }

    const Surface& surface_;
    ImageSize size_;
    bool perspective_;
    /// A distance of the world in pixels: at a depth of 1 in perspective.
    float pixels_;
    std::vector<float> nearness_;
};

}  // namespace

std::vector<float> eyeDomeShading(const Surface& surface, const Projection& projection) {
    const Shader shader(surface, projection);
    const ImageSize& size = surface.Size();
    std::vector<float> brightness(size.Pixels(), 1.0F);
    for (int row = 0; row < size.height; ++row)
        for (int column = 0; column < size.width; ++column)
            if (const std::size_t pixel = size.Pixel(column, row); surface.IsCovered(pixel))
                brightness[pixel] = 1.0F - strength * shader.Darkness(column, row);
    return brightness;
}

}  // namespace vpc::draw
