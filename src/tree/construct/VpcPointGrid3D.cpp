#include "tree/construct/VpcPointGrid3D.h"

#include <algorithm>
#include <cmath>

namespace {

unsigned long long cellsAlong(double extent, double cellSize) {
    const double cells = std::trunc(extent / cellSize + 0.5);
    if (!(cells >= 2.0)) return 1;
    // Far more than there is memory for; the grid refuses it.
    constexpr double most = 1e15;
    return static_cast<unsigned long long>(std::min(cells, most));
}

}  // namespace

VpcPointGrid3D::VpcPointGrid3D(double minDistance, const VpcBoundingBoxAxisAligned& box,
                               double cellSize)
    : VpcPointGrid3D(minDistance, box, cellsAlong(box.sideX, cellSize),
                     cellsAlong(box.sideY, cellSize), cellsAlong(box.sideZ, cellSize)) {
}

VpcPointGrid3D::VpcPointGrid3D(double minDistance, const VpcBoundingBoxAxisAligned& box,
                               unsigned long long nx, unsigned long long ny, unsigned long long nz)
    : minDistance_(minDistance), grid_(box, nx, ny, nz) {
}

void VpcPointGrid3D::FilterPoints(std::vector<VpcPoint3D>& points) {
    for (unsigned long long i = 0; i < points.size(); ++i) AddPointToCell(points, i);
}

void VpcPointGrid3D::AddPointToCell(std::vector<VpcPoint3D>& points, unsigned long long index) {
    const VpcPoint3D& point = points[index];
    const Cell& cell = CellOf(point);
    if (cell.empty() ||
        DistanceToCellCentre(point, point) < DistanceToCellCentre(points[cell.front()], point))
        ReplacePointInCell(point, index);
}

void VpcPointGrid3D::ReplacePointInCell(const VpcPoint3D& point, unsigned long long index) {
    CellOf(point).assign(1, index);
}

std::vector<VpcPoint3D> VpcPointGrid3D::GetFilteredPoints(std::vector<VpcPoint3D>& points) {
    std::vector<VpcPoint3D> kept;
    for (const Cell& cell : grid_.Cells())
        if (!cell.empty() && cell.front() < points.size()) kept.push_back(points[cell.front()]);
    return kept;
}

unsigned long long VpcPointGrid3D::CellIndex(double coordinate, unsigned axis) const {
    const double cell = (coordinate - grid_.Minimum(axis)) / grid_.CellSize(axis);
    const auto last = static_cast<double>(grid_.Count(axis) - 1);
    if (!(cell >= 1.0)) return 0;
    return static_cast<unsigned long long>(std::min(cell, last));
}

VpcPointGrid3D::Cell& VpcPointGrid3D::CellOf(const VpcPoint3D& point) {
    return grid_.At(CellIndex(point.x, 0), CellIndex(point.y, 1), CellIndex(point.z, 2));
}

double VpcPointGrid3D::DistanceToCellCentre(const VpcPoint3D& point,
                                            const VpcPoint3D& inCell) const {
    return point.DistanceTo(CellCentre(inCell.x, 0), CellCentre(inCell.y, 1),
                            CellCentre(inCell.z, 2));
}

double VpcPointGrid3D::CellCentre(double coordinate, unsigned axis) const {
    const auto cell = static_cast<double>(CellIndex(coordinate, axis));
    return grid_.Minimum(axis) + (cell + 0.5) * grid_.CellSize(axis);
}
