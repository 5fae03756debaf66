#include "vpc/tree/PointStatistics.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "core/util/ValueAt.h"

namespace vpc {

namespace {

constexpr std::size_t values = 7;
constexpr std::array<const char*, values> names = {"x",   "y",     "z",   "intensity",
                                                   "red", "green", "blue"};

using Values = std::array<double, values>;

Values valuesOf(const char* record) {
    const auto number = [&](unsigned offset) { return valueAt<double>(record + offset); };
    const auto channel = [&](unsigned offset) {
        return static_cast<double>(valueAt<std::uint16_t>(record + offset));
    };
    return {number(VpcPoint3D::recordOffsetX),    number(VpcPoint3D::recordOffsetY),
            number(VpcPoint3D::recordOffsetZ),    number(VpcPoint3D::recordOffsetIntensity),
            channel(VpcPoint3D::recordOffsetRed), channel(VpcPoint3D::recordOffsetGreen),
            channel(VpcPoint3D::recordOffsetBlue)};
}

/// A raster over the root's box in plan, which notes the cells that hold points.
class PlanRaster {
public:
    PlanRaster(const Bounds& root, unsigned long long points)
        : x_(root.minimum[0]),
          y_(root.minimum[1]),
          width_(root.maximum[0] - x_),
          height_(root.maximum[1] - y_) {
        const double wanted = static_cast<double>(points) / pointsInACell;
        const double side = std::sqrt(width_ * height_ / wanted);
        columns_ = CellsIn(width_ / side);
        rows_ = CellsIn(height_ / side);
        isHeld_.resize(columns_ * rows_);
    }

    void Add(double x, double y) {
        const std::size_t column = Index((x - x_) / width_, columns_);
        const std::size_t row = Index((y - y_) / height_, rows_);
        isHeld_[row * columns_ + column] = true;
    }
    double CoveredArea() const {
        const auto held = std::count(isHeld_.begin(), isHeld_.end(), true);
        return width_ * height_ * static_cast<double>(held) / static_cast<double>(isHeld_.size());
    }

private:
    static constexpr double pointsInACell = 16.0;
    /// On one side; so the raster takes 32 MiB at most.
    static constexpr double mostCells = 16384.0;

    static std::size_t CellsIn(double length) {
        // Also for a length that is no number, as where the box has no area.
        if (!(length > 1.0)) return 1;
        return static_cast<std::size_t>(std::min(length, mostCells));
    }
    /// The cell at `share` of a side, 0 to 1; what a damaged file has elsewhere goes to the border.
    static std::size_t Index(double share, std::size_t cells) {
        if (!(share > 0.0)) return 0;
        const double index = std::min(share, 1.0) * static_cast<double>(cells);
        return std::min(static_cast<std::size_t>(index), cells - 1);
    }

    double x_;
    double y_;
    double width_;
    double height_;
    std::size_t columns_;
    std::size_t rows_;
    std::vector<bool> isHeld_;
};

/// The ranges and the sums of values. What an addition rounds off is kept and added to the next
/// value (Kahan's sum), so that a mean is as exact as its values.
class Sums {
public:
    Sums() {
        minimum_.fill(std::numeric_limits<double>::infinity());
        maximum_.fill(-std::numeric_limits<double>::infinity());
    }

    void Add(const Values& point) {
        for (std::size_t i = 0; i < values; ++i) {
            minimum_[i] = std::min(minimum_[i], point[i]);
            maximum_[i] = std::max(maximum_[i], point[i]);
            const double value = point[i] - excess_[i];
            const double sum = sum_[i] + value;
            excess_[i] = (sum - sum_[i]) - value;
            sum_[i] = sum;
        }
    }
    PointStatistics::Range Of(std::size_t value, unsigned long long points) const {
        return {names[value], minimum_[value], maximum_[value],
                sum_[value] / static_cast<double>(points)};
    }

private:
    Values minimum_;
    Values maximum_;
    Values sum_{};
    /// What the sum holds too much.
    Values excess_{};
};

}  // namespace

PointStatistics PointStatistics::Measure(DeepestLevel& level, const Bounds& root,
                                         const DeepestLevel::Watcher& watcher) {
    PlanRaster raster(root, level.Points());
    Sums sums;
    for (const DeepestLevel::Node& node : level.Nodes())
        level.ForEachPoint(node, watcher, [&](const char* record) {
            const Values point = valuesOf(record);
            sums.Add(point);
            raster.Add(point[0], point[1]);
        });
    PointStatistics result;
    for (std::size_t i = 0; i < values; ++i) result.ranges[i] = sums.Of(i, level.Points());
    result.coveredArea = raster.CoveredArea();
    return result;
}

Bounds PointStatistics::Extent() const {
    return {{ranges[0].minimum, ranges[1].minimum, ranges[2].minimum},
            {ranges[0].maximum, ranges[1].maximum, ranges[2].maximum}};
}

double PointStatistics::SpacingOf(unsigned long long points) const {
    return points == 0 ? 0.0 : std::sqrt(coveredArea / static_cast<double>(points));
}

}  // namespace vpc
