#include "draw/ClosingRadii.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>

namespace vpc::draw {

namespace {

/// The radius in sides of a cell, by the number of the eight cells around it that belong to the
/// surface. The more of them do, the denser the points lie; found by trying with random points.
constexpr std::array<float, 9> radiusOfNeighbours = {0.0F, 0.0F, 0.0F,  1.3F, 1.25F,
                                                     1.2F, 1.0F, 0.85F, 0.75F};
/// How much further away the next cell's point may be on the same surface, in sides of a cell.
constexpr float steepest = 2.0F;
/// The most levels of cells, and how often the largest cell fits into the picture's shorter side:
/// larger discs would smear details.
constexpr int mostLevels = 7;
constexpr int fewestCells = 12;
/// How often the largest radius fits into it.
constexpr float fewestDiscs = 18.0F;
/// Radii up to this are never looked at again.
constexpr float smallRadius = 2.0F;
/// A disc may be larger than those around it by this factor.
constexpr float mostGrowth = 1.6F;
constexpr int limitRounds = 3;

constexpr float denseRadius = 0.5F;
/// The radius of a dot where all points are far apart, in shorter sides of the picture.
constexpr float dotInSides = 1.0F / 120.0F;

float shorterSide(const ImageSize& size) {
    return static_cast<float>(std::min(size.width, size.height));
}

/// A depth in the upper half, and in the lower half the pixel whose point it is.
using Cell = std::uint64_t;
constexpr Cell emptyCell = ~0ULL;

constexpr Cell cellOf(float depth, std::uint32_t pixel) {
    return static_cast<Cell>(std::bit_cast<std::uint32_t>(depth)) << 32U | pixel;
}

/// The nearest points of square cells of the picture, with a rim of empty cells around them.
class CellGrid {
public:
    CellGrid(int columns, int rows)
        : stride_(columns + 2),
          columns_(columns),
          rows_(rows),
          cells_(static_cast<std::size_t>(stride_) * (static_cast<std::size_t>(rows) + 2),
                 emptyCell) {}

    static CellGrid OfPixels(const DepthBuffer& points) {
        const ImageSize& size = points.Size();
        CellGrid grid(size.width, size.height);
        for (int row = 0; row < size.height; ++row) {
            Cell* const to = grid.At(0, row);
            const std::size_t from = size.Pixel(0, row);
            for (std::size_t i = 0; i < static_cast<std::size_t>(size.width); ++i)
                if (!points.IsEmpty(from + i))
                    to[i] = cellOf(points.Depth(from + i), static_cast<std::uint32_t>(from + i));
        }
        return grid;
    }
    /// The grid of cells twice as wide and high.
    CellGrid Coarser() const {
        CellGrid grid((columns_ + 1) / 2, (rows_ + 1) / 2);
        for (int row = 0; row < grid.rows_; ++row) {
            // Beyond an odd number of rows or columns lies the rim.
            const Cell* const upper = At(0, 2 * row);
            const Cell* const lower = upper + stride_;
            Cell* const to = grid.At(0, row);
            for (std::size_t i = 0; i < static_cast<std::size_t>(grid.columns_); ++i)
                to[i] = std::min(std::min(upper[2 * i], upper[2 * i + 1]),
                                 std::min(lower[2 * i], lower[2 * i + 1]));
        }
        return grid;
    }
    Cell* At(int column, int row) { return &cells_[Index(column, row)]; }
    const Cell* At(int column, int row) const { return &cells_[Index(column, row)]; }
    /// The eight cells around one of this grid's: by rows, from the upper left one.
    std::array<Cell, 8> Around(const Cell* cell) const {
        const Cell* const upper = cell - stride_;
        const Cell* const lower = cell + stride_;
        return {upper[-1], upper[0], upper[1], cell[-1], cell[1], lower[-1], lower[0], lower[1]};
    }

private:
    std::size_t Index(int column, int row) const {
        return static_cast<std::size_t>(row + 1) * static_cast<std::size_t>(stride_) +
               static_cast<std::size_t>(column + 1);
    }

    int stride_;
    int columns_;
    int rows_;
    std::vector<Cell> cells_;
};

/// The cells of every level, the pixels first.
class Pyramid {
public:
    struct Closing {
        std::size_t level = 0;
        float radius = denseRadius;
    };

    Pyramid(const DepthBuffer& points, const Projection& projection)
        : projection_(projection),
          largest_(std::clamp(shorterSide(projection.Size()) / fewestDiscs, 1.0F,
                              static_cast<float>(DepthBuffer::margin))) {
        grids_.push_back(CellGrid::OfPixels(points));
        const int levels = LevelsFor(projection.Size());
        while (static_cast<int>(grids_.size()) < levels) grids_.push_back(grids_.back().Coarser());
    }

    /// The level and radius that close the surface around a point; nothing where it lies on none.
    std::optional<Closing> Close(int column, int row, float depth) const {
        const float step = Step(depth);
        for (std::size_t level = 0; level < grids_.size(); ++level) {
            const auto side = static_cast<float>(1U << level);
            const Cell deepest = cellOf(depth + step * side, 0xFFFFFFFF);
            unsigned closed = 0;
            unsigned bit = 1;
            for (const Cell cell : Around(level, column, row)) {
                closed |= cell <= deepest ? bit : 0;
                bit <<= 1U;
            }
            if (level == 0 && closed == 0xFF) return Closing{};
            if (!HasSquare(closed)) continue;
            const float radius =
                side * radiusOfNeighbours[static_cast<std::size_t>(std::popcount(closed))];
            return Closing{level, std::clamp(radius, 1.0F, largest_)};
        }
        return std::nullopt;
    }
    /// A radius that a third of those around a disc do not reach that closes at `level`, on its
    /// surface; nothing where there are none.
    std::optional<float> RadiusAround(std::size_t level, int column, int row, float depth,
                                      const std::vector<float>& radii) const {
        const float reach = Step(depth) * static_cast<float>(1U << level);
        std::array<float, 8> found;
        found.fill(std::numeric_limits<float>::infinity());
        std::size_t count = 0;
        for (const Cell cell : Around(level, column, row)) {
            const auto other = std::bit_cast<float>(static_cast<std::uint32_t>(cell >> 32U));
            if (!(std::abs(other - depth) <= reach)) continue;
            // Points on no surface have no radius yet.
            const float radius = radii[static_cast<std::uint32_t>(cell)];
            if (radius > 0.0F) found[count++] = radius;
        }
        if (count == 0) return std::nullopt;
        std::sort(found.begin(), found.end());
        return found[(count - 1) / 3];
    }

private:
    /// Whether three of the neighbours, whose bits are in the order of CellGrid::Around, make a
    /// square with the cell in their middle. A line of points never does, however it is inclined.
    static bool HasSquare(unsigned neighbours) {
        for (const unsigned square : {0b00001011U, 0b00010110U, 0b01101000U, 0b11010000U})
            if ((neighbours & square) == square) return true;
        return false;
    }
    /// How much deeper a point of the next pixel may be on the same surface.
    float Step(float depth) const {
        return steepest * static_cast<float>(projection_.PixelSide(depth));
    }
    std::array<Cell, 8> Around(std::size_t level, int column, int row) const {
        return grids_[level].Around(grids_[level].At(column >> level, row >> level));
    }
    static int LevelsFor(const ImageSize& size) {
        int levels = 1;
        while (levels < mostLevels && (fewestCells << levels) <= std::min(size.width, size.height))
            ++levels;
        return levels;
    }

    const Projection& projection_;
    /// The largest radius.
    float largest_;
    std::vector<CellGrid> grids_;
};

/// The radius in the world of a point on no surface: the median of the others, or a small dot
/// where there are none.
class LoneRadius {
public:
    explicit LoneRadius(const Projection& projection)
        : projection_(projection),
          dot_(std::clamp(dotInSides * shorterSide(projection.Size()), 1.0F, 16.0F)) {}

    void Learn(float radius, float depth) {
        known_.push_back(radius * static_cast<float>(projection_.PixelSide(depth)));
    }
    void Finish() {
        if (known_.empty()) return;
        const auto middle = known_.begin() + static_cast<std::ptrdiff_t>(known_.size() / 2);
        std::nth_element(known_.begin(), middle, known_.end());
        median_ = *middle;
    }
    float Pixels(float depth) const {
        if (!median_) return dot_;
        const float radius = *median_ / static_cast<float>(projection_.PixelSide(depth));
        return std::clamp(radius, denseRadius, static_cast<float>(DepthBuffer::margin));
    }

private:
    const Projection& projection_;
    float dot_;
    std::vector<float> known_;
    std::optional<float> median_;
};

/// Finds the radii in three passes: what closes the surface around every point, what is too large
/// beside its neighbours, and the points on no surface.
class RadiusFinder {
public:
    RadiusFinder(const DepthBuffer& points, const Projection& projection)
        : points_(points),
          pyramid_(points, projection),
          lone_(projection),
          radii_(points.Size().Pixels()) {}

    std::vector<float> Find() {
        Close();
        for (int round = 0; round < limitRounds; ++round) Limit();
        lone_.Finish();
        for (const std::size_t pixel : lonePixels_)
            radii_[pixel] = lone_.Pixels(points_.Depth(pixel));
        return std::move(radii_);
    }

private:
    struct Large {
        int column;
        int row;
        std::size_t level;
    };

    void Close() {
        const ImageSize& size = points_.Size();
        for (int row = 0; row < size.height; ++row) {
            for (int column = 0; column < size.width; ++column) {
                const std::size_t pixel = size.Pixel(column, row);
                if (!points_.IsEmpty(pixel)) Close(column, row, pixel);
            }
        }
    }
    void Close(int column, int row, std::size_t pixel) {
        const float depth = points_.Depth(pixel);
        const auto closing = pyramid_.Close(column, row, depth);
        if (!closing) {
            lonePixels_.push_back(pixel);
            return;
        }
        radii_[pixel] = closing->radius;
        if (closing->radius > smallRadius) large_.push_back({column, row, closing->level});
        // A share of all is enough for the median.
        if (pixel % 16 == 0) lone_.Learn(closing->radius, depth);
    }
    void Limit() {
        const std::vector<float> before = radii_;
        for (const auto& [column, row, level] : large_) {
            const std::size_t pixel = points_.Size().Pixel(column, row);
            const auto around =
                pyramid_.RadiusAround(level, column, row, points_.Depth(pixel), before);
            if (around)
                radii_[pixel] = std::min(radii_[pixel], std::max(mostGrowth * *around, 1.0F));
        }
    }

    const DepthBuffer& points_;
    Pyramid pyramid_;
    LoneRadius lone_;
    std::vector<float> radii_;
    std::vector<Large> large_;
    std::vector<std::size_t> lonePixels_;
};

}  // namespace

std::vector<float> closingRadii(const DepthBuffer& points, const Projection& projection) {
    return RadiusFinder(points, projection).Find();
}

}  // namespace vpc::draw
