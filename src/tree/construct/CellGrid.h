#pragma once

#include <array>
#include <cstdint>
#include <limits>

#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "core/geometry/VpcTriplet.h"

namespace vpc {

/// A box and the regular grid of cells that it is cut into. Box and cells are closed at their
/// minimum and open at their maximum, and neighbours share a face to the last bit: every point of
/// the box lies in exactly one cell.
class CellGrid {
public:
    using Triple = std::array<double, 3>;
    using Triplet = VpcTriplet<unsigned long long>;

    static constexpr unsigned long long noCell = std::numeric_limits<unsigned long long>::max();

    /// A box that is not cut yet: it has 0 cells.
    explicit CellGrid(const VpcBoundingBoxAxisAligned& box)
        : minimum_{box.minPoint.x, box.minPoint.y, box.minPoint.z},
          maximum_{box.maxPoint.x, box.maxPoint.y, box.maxPoint.z} {}

    const Triple& Minimum() const { return minimum_; }
    const Triple& Maximum() const { return maximum_; }
    double Extent(unsigned axis) const { return maximum_[axis] - minimum_[axis]; }
    bool Contains(double x, double y, double z) const {
        return minimum_[0] <= x && x < maximum_[0] && minimum_[1] <= y && y < maximum_[1] &&
               minimum_[2] <= z && z < maximum_[2];
    }

    /// Cuts the box into as many cells along each axis.
    void Cut(const Triplet& counts);
    /// False where a coordinate's precision cannot tell the cells of such a grid apart, or where
    /// they would have no extent along an axis and so hold no point.
    bool CanBeCut(const Triplet& counts) const;

    const Triplet& Counts() const { return counts_; }
    const Triple& CellSize() const { return cellSize_; }
    /// The number of a cell: x runs fastest, then y, then z.
    unsigned long long IndexOf(const Triplet& cell) const {
        return (cell.third * counts_.second + cell.second) * counts_.first + cell.first;
    }
    VpcBoundingBoxAxisAligned BoxOf(const Triplet& cell) const;
    /// The number of the cell by the point's distance from the box's minimum, divided by the cell's
    /// size; noCell where there is none. Rounding may put a point just beside its cell.
    unsigned long long NearCell(double x, double y, double z) const;
    /// The number of the cell that holds the point, which lies in the box.
    unsigned long long CellHolding(double x, double y, double z) const {
        if (!isHalved_) return CellOfMany(x, y, z);
        // Without branches: which way a point goes cannot be foreseen.
        return static_cast<unsigned>(x >= middle_[0]) +
               static_cast<unsigned>(y >= middle_[1]) * stepY_ +
               static_cast<unsigned>(z >= middle_[2]) * stepZ_;
    }

private:
    /// Where a cell begins, and the one before it ends. The last cell ends where the box ends, so
    /// that rounding leaves no gap.
    double Boundary(unsigned axis, unsigned long long cell, unsigned long long count,
                    double cellSize) const {
        return cell == count ? maximum_[axis]
                             : minimum_[axis] + static_cast<double>(cell) * cellSize;
    }
    unsigned long long CellOfMany(double x, double y, double z) const;
    unsigned long long CellAlong(unsigned axis, unsigned long long count, double value) const;

    // What is needed on the way down to a leaf comes first: where the second cell along an axis
    // begins, and how far its number is from the first one's.
    Triple middle_{};
    bool isHalved_ = false;
    std::uint8_t stepY_ = 0;
    std::uint8_t stepZ_ = 0;
    Triplet counts_{0, 0, 0};
    Triple minimum_;
    Triple maximum_;
    Triple cellSize_{};
    /// Cells that begin within a unit of length, roughly.
    Triple cellsPerUnit_{};
};

}  // namespace vpc
