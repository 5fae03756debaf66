#include "tree/construct/CellGrid.h"

#include <algorithm>

namespace vpc {

namespace {

std::array<unsigned long long, 3> axesOf(const CellGrid::Triplet& triplet) {
    return {triplet.first, triplet.second, triplet.third};
}

/// Sets `whole` to the number of the cell; false where it is none of the `count` cells.
bool truncateToCell(double cell, unsigned long long count, unsigned long long& whole) {
    // Truncation is toward zero, so the first cell begins just above -1.
    if (!(cell > -1.0 && cell < static_cast<double>(count))) return false;
    whole = static_cast<unsigned long long>(std::max(cell, 0.0));
    return true;
}

}  // namespace

void CellGrid::Cut(const Triplet& counts) {
    counts_ = counts;
    const auto along = axesOf(counts);
    isHalved_ = true;
    for (unsigned axis = 0; axis < 3; ++axis) {
        cellSize_[axis] = Extent(axis) / static_cast<double>(along[axis]);
        isHalved_ = isHalved_ && along[axis] <= 2;
        middle_[axis] = along[axis] == 2 ? Boundary(axis, 1, 2, cellSize_[axis])
                                         : std::numeric_limits<double>::infinity();
        cellsPerUnit_[axis] = 1.0 / cellSize_[axis];
    }
    if (!isHalved_) return;
    stepY_ = static_cast<std::uint8_t>(counts.first);
    stepZ_ = static_cast<std::uint8_t>(counts.first * counts.second);
}

bool CellGrid::CanBeCut(const Triplet& counts) const {
    const auto along = axesOf(counts);
    for (unsigned axis = 0; axis < 3; ++axis) {
        const double cellSize = Extent(axis) / static_cast<double>(along[axis]);
        double begin = minimum_[axis];
        for (unsigned long long cell = 1; cell <= along[axis]; ++cell) {
            const double end = Boundary(axis, cell, along[axis], cellSize);
            if (!(begin < end)) return false;
            begin = end;
        }
    }
    return true;
}

VpcBoundingBoxAxisAligned CellGrid::BoxOf(const Triplet& cell) const {
    const auto along = axesOf(counts_);
    const auto cells = axesOf(cell);
    Triple low;
    Triple high;
    for (unsigned axis = 0; axis < 3; ++axis) {
        low[axis] = Boundary(axis, cells[axis], along[axis], cellSize_[axis]);
        high[axis] = Boundary(axis, cells[axis] + 1, along[axis], cellSize_[axis]);
    }
    return {low[0], low[1], low[2], high[0], high[1], high[2]};
}

unsigned long long CellGrid::NearCell(double x, double y, double z) const {
    Triplet cell;
    if (!truncateToCell((x - minimum_[0]) / cellSize_[0], counts_.first, cell.first) ||
        !truncateToCell((y - minimum_[1]) / cellSize_[1], counts_.second, cell.second) ||
        !truncateToCell((z - minimum_[2]) / cellSize_[2], counts_.third, cell.third))
        return noCell;
    return IndexOf(cell);
}

unsigned long long CellGrid::CellOfMany(double x, double y, double z) const {
    return IndexOf({CellAlong(0, counts_.first, x), CellAlong(1, counts_.second, y),
                    CellAlong(2, counts_.third, z)});
}

unsigned long long CellGrid::CellAlong(unsigned axis, unsigned long long count,
                                       double value) const {
    const double near = (value - minimum_[axis]) * cellsPerUnit_[axis];
    const auto cells = static_cast<long long>(count);
    // Signed numbers, since they are converted faster.
    long long cell = 0;
    // A box without extent has cells of none, where the quotient is no number.
    if (near >= static_cast<double>(cells))
        cell = cells - 1;
    else if (near > 0.0)
        cell = static_cast<long long>(near);
    const auto begins = [&](long long at) {
        return minimum_[axis] + static_cast<double>(at) * cellSize_[axis];
    };
    while (cell > 0 && value < begins(cell)) --cell;
    while (cell + 1 < cells && value >= begins(cell + 1)) ++cell;
    return static_cast<unsigned long long>(cell);
}

}  // namespace vpc
