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

/// Shades a picture by its pixels' nearness. This is a measure that is linear in the picture on
/// every plane: the reciprocal of the depth in perspective, the negative depth in parallel
/// projection.
class Shader {
public:
    Shader(const Surface& surface, const Projection& projection)
        : surface_(surface),
          size_(surface.Size()),
          perspective_(projection.GetCamera().perspective),
          pixels_(static_cast<float>(perspective_ ? projection.FocalPixels() : projection.Scale())),
          nearness_(size_.Pixels(), nothing),
          reaches_(static_cast<std::size_t>(size_.width)) {
        for (std::size_t pixel = 0; pixel < nearness_.size(); ++pixel)
            if (surface.IsCovered(pixel)) nearness_[pixel] = Nearness(surface.Depth(pixel));
    }

    /// Sets the brightness of the row's pixels that are covered.
    void ShadeRow(int row, float* brightness) {
        FindReaches(row);
        int column = 0;
        while (column < size_.width) {
            const int reach = reaches_[static_cast<std::size_t>(column)];
            int end = column + 1;
            while (end < size_.width && reaches_[static_cast<std::size_t>(end)] == reach) ++end;
            Shade(row, column, end, reach, brightness);
            column = end;
        }
    }

private:
    /// No depth has this nearness.
    static constexpr float nothing = std::numeric_limits<float>::max();

    float Nearness(float depth) const { return perspective_ ? 1.0F / depth : -depth; }
    /// How far away every pixel of the row wants to look. Pixels that are not covered go along with
    /// those before them.
    void FindReaches(int row) {
        int before = leastReach;
        for (int column = 0; column < size_.width; ++column) {
            const std::size_t pixel = size_.Pixel(column, row);
            if (surface_.IsCovered(pixel))
                before = std::clamp(static_cast<int>(reachInRadii * surface_.Radius(pixel)),
                                    leastReach, mostReach);
            reaches_[static_cast<std::size_t>(column)] = before;
        }
    }
    /// Shades pixels of a row that all want to look as far.
    void Shade(int row, int column, int end, int reach, float* brightness) const {
        const bool canLookDown = std::min(row, size_.height - 1 - row) >= reach;
        const int inner = canLookDown ? std::clamp(reach, column, end) : end;
        const int innerEnd = canLookDown ? std::clamp(size_.width - reach, inner, end) : end;
        for (int x = column; x < inner; ++x) ShadeAtEdge(x, row, reach, brightness);
        ShadeInside(row, inner, innerEnd, reach, brightness);
        for (int x = innerEnd; x < end; ++x) ShadeAtEdge(x, row, reach, brightness);
    }
    void ShadeInside(int row, int column, int end, int reach, float* brightness) const {
        if (column >= end) return;
        if (perspective_)
            ShadeSeveral<true>(row, column, end, reach, brightness);
        else
            ShadeSeveral<false>(row, column, end, reach, brightness);
    }
    /// Without jumps, so that the processor shades several pixels at once.
    template <bool perspective>
    void ShadeSeveral(int row, int column, int end, int reach, float* brightness) const {
        const float* const own = &nearness_[size_.Pixel(column, row)];
        const std::ptrdiff_t down = static_cast<std::ptrdiff_t>(reach) * size_.width;
        const float* const left = own - reach;
        const float* const right = own + reach;
        const float* const above = own - down;
        const float* const below = own + down;
        const float* const aboveLeft = above - reach;
        const float* const aboveRight = above + reach;
        const float* const belowLeft = below - reach;
        const float* const belowRight = below + reach;
        float* const to = brightness + column;
        const auto far = static_cast<float>(reach);
        const float pixels = pixels_;
        const int count = end - column;
        for (int i = 0; i < count; ++i) {
            const float at = own[i];
            const float scale = perspective ? pixels / at : pixels;
            const float sum = Share(Rise(right[i], left[i], at, scale) / far) +
                              Share(Rise(below[i], above[i], at, scale) / far) +
                              Share(Rise(belowRight[i], aboveLeft[i], at, scale) / far) +
                              Share(Rise(aboveRight[i], belowLeft[i], at, scale) / far);
            const float shaded = 1.0F - strength * (sum / 4.0F);
            to[i] = at == nothing ? 1.0F : shaded;
        }
    }
    /// At the picture's edge one looks less far. Within a disc there is nothing to be seen, so
    /// there the other directions have to tell.
    void ShadeAtEdge(int column, int row, int wanted, float* brightness) const {
        const float* const at = &nearness_[size_.Pixel(column, row)];
        if (*at == nothing) return;
        const int across = std::min({wanted, column, size_.width - 1 - column});
        const int down = std::min({wanted, row, size_.height - 1 - row});
        const float scale = perspective_ ? pixels_ / *at : pixels_;
        float sum = 0.0F;
        float count = 0.0F;
        for (const auto& [dx, dy] : directions) {
            const int reach = dx == 0 ? down : dy == 0 ? across : std::min(across, down);
            if (2 * reach < wanted) continue;
            const std::ptrdiff_t offset = dx * reach + dy * reach * size_.width;
            const float rise = Rise(at[offset], at[-offset], *at, scale);
            sum += Share(rise / static_cast<float>(reach));
            count += 1.0F;
        }
        brightness[column] = 1.0F - strength * (count > 0.0F ? sum / count : 0.0F);
    }
    /// Beyond the range of floats there is only one answer.
    static float Share(float rise) {
        const float share = rise / (rise + halfway);
        return rise < beyondAll ? share : 1.0F;
    }
    /// How far, in sides of a pixel, the mean of two opposite neighbours comes nearer to the eye
    /// than the pixel itself; 0 where it does not, or one of them is not covered.
    /// \param scale what a difference of nearness is multiplied by
    static float Rise(float a, float b, float own, float scale) {
        const float nearer = a + b - 2.0F * own;
        // One choice after the other leaves no jumps.
        float rise = nearer * scale;
        rise = nearer > 0.0F ? rise : 0.0F;
        rise = a == nothing ? 0.0F : rise;
        return b == nothing ? 0.0F : rise;
    }

    const Surface& surface_;
    ImageSize size_;
    bool perspective_;
    /// A distance of the world in pixels: at a depth of 1 in perspective.
    float pixels_;
    std::vector<float> nearness_;
    /// Of a row's pixels.
    std::vector<int> reaches_;
};

}  // namespace

std::vector<float> eyeDomeShading(const Surface& surface, const Projection& projection) {
    Shader shader(surface, projection);
    const ImageSize& size = surface.Size();
    std::vector<float> brightness(size.Pixels(), 1.0F);
    for (int row = 0; row < size.height; ++row)
        shader.ShadeRow(row, &brightness[size.Pixel(0, row)]);
    return brightness;
}

}  // namespace vpc::draw
