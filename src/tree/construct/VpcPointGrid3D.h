#pragma once

#include <vector>

#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "core/geometry/VpcPoint3D.h"
#include "tree/construct/VpcGrid3D.h"

/// Thins points by keeping, in every cell of a grid, the point nearest to the cell's centre.
class VpcPointGrid3D {
public:
    /// A grid over `box` whose cells are about `cellSize` wide, at least one along each axis.
    VpcPointGrid3D(double minDistance, const VpcBoundingBoxAxisAligned& box, double cellSize);
    /// A grid with the given number of cells along each axis.
    VpcPointGrid3D(double minDistance, const VpcBoundingBoxAxisAligned& box, unsigned long long nx,
                   unsigned long long ny, unsigned long long nz);

    /// Puts every point of the list, in order, into its cell.
    void FilterPoints(std::vector<VpcPoint3D>& points);
    /// Puts the point at `index` of the list into its cell: an empty cell takes it, a filled one
    /// only if it is strictly nearer to the cell's centre than the point it holds.
    void AddPointToCell(std::vector<VpcPoint3D>& points, unsigned long long index);
    /// Makes `point`, which stands at `index` of its list, the one point of its cell.
    void ReplacePointInCell(const VpcPoint3D& point, unsigned long long index);
    /// The points that the cells hold, cells in the order of z, then y, then x.
    std::vector<VpcPoint3D> GetFilteredPoints(std::vector<VpcPoint3D>& points);

    /// The spacing that the thinned points are meant to have.
    double MinDistance() const { return minDistance_; }
    unsigned long long Count(unsigned axis) const { return grid_.Count(axis); }

private:
    using Cell = std::vector<unsigned long long>;

    unsigned long long CellIndex(double coordinate, unsigned axis) const;
    Cell& CellOf(const VpcPoint3D& point);
    double DistanceToCellCentre(const VpcPoint3D& point, const VpcPoint3D& inCell) const;
    double CellCentre(double coordinate, unsigned axis) const;

    double minDistance_;
    VpcGrid3D<Cell> grid_;
};
