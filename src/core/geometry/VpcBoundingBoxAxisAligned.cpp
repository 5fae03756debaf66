#include "core/geometry/VpcBoundingBoxAxisAligned.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "core/geometry/VpcNumMathTools.h"

VpcBoundingBoxAxisAligned::VpcBoundingBoxAxisAligned() {
    constexpr double beyondAll = VpcNumMathTools::beyondAll;
    minPoint.SetCoordinates(beyondAll, beyondAll, beyondAll);
    maxPoint.SetCoordinates(-beyondAll, -beyondAll, -beyondAll);
}

VpcBoundingBoxAxisAligned::VpcBoundingBoxAxisAligned(const VpcPoint3D& min, const VpcPoint3D& max) {
    SetNewBoundaries(min, max);
}

VpcBoundingBoxAxisAligned::VpcBoundingBoxAxisAligned(double x0, double y0, double z0, double x1,
                                                     double y1, double z1) {
    Update(x0, y0, z0, x1, y1, z1);
}

bool VpcBoundingBoxAxisAligned::Update(double x0, double y0, double z0, double x1, double y1,
                                       double z1) {
    minPoint.SetCoordinates(x0, y0, z0);
    maxPoint.SetCoordinates(x1, y1, z1);
    cornerPoints.assign({minPoint, maxPoint});
    sideX = x1 - x0;
    sideY = y1 - y0;
    sideZ = z1 - z0;
    centre.SetCoordinates(x0 + 0.5 * sideX, y0 + 0.5 * sideY, z0 + 0.5 * sideZ);
    halfDiagonal = 0.5 * std::sqrt(sideX * sideX + sideY * sideY + sideZ * sideZ);
    sortedSides.assign({{0, sideX}, {1, sideY}, {2, sideZ}});
    // Swapping neighbours only keeps equal lengths in order, and needs no working memory.
    for (const std::size_t i : {0U, 1U, 0U})
        if (myBoxSideSort(sortedSides[i + 1], sortedSides[i]))
            std::swap(sortedSides[i], sortedSides[i + 1]);
    return true;
}

bool VpcBoundingBoxAxisAligned::SetNewBoundaries(const VpcBoundingBoxAxisAligned& box) {
    return SetNewBoundaries(box.minPoint, box.maxPoint);
}

bool VpcBoundingBoxAxisAligned::SetNewBoundaries(double x0, double y0, double z0, double x1,
                                                 double y1, double z1) {
    return Update(x0, y0, z0, x1, y1, z1);
}

bool VpcBoundingBoxAxisAligned::SetNewBoundaries(const VpcPoint3D& min, const VpcPoint3D& max) {
    return Update(min.x, min.y, min.z, max.x, max.y, max.z);
}

bool VpcBoundingBoxAxisAligned::UpdateRegionOfInterest(const VpcPoint3D& p) {
    return Update(std::min(minPoint.x, p.x), std::min(minPoint.y, p.y), std::min(minPoint.z, p.z),
                  std::max(maxPoint.x, p.x), std::max(maxPoint.y, p.y), std::max(maxPoint.z, p.z));
}

VpcBoundingBoxAxisAligned VpcBoundingBoxAxisAligned::MergeWith(
    const VpcBoundingBoxAxisAligned& other) const {
    const VpcPoint3D& min = other.minPoint;
    const VpcPoint3D& max = other.maxPoint;
    return {std::min(minPoint.x, min.x), std::min(minPoint.y, min.y), std::min(minPoint.z, min.z),
            std::max(maxPoint.x, max.x), std::max(maxPoint.y, max.y), std::max(maxPoint.z, max.z)};
}

bool VpcBoundingBoxAxisAligned::Scale(double factor) {
    if (!(factor > 0)) return false;
    const double hx = (centre.x - minPoint.x) * factor;
    const double hy = (centre.y - minPoint.y) * factor;
    const double hz = (centre.z - minPoint.z) * factor;
    return Update(centre.x - hx, centre.y - hy, centre.z - hz, centre.x + hx, centre.y + hy,
                  centre.z + hz);
}

bool VpcBoundingBoxAxisAligned::AddMargin(double m) {
    return Update(minPoint.x - m, minPoint.y - m, minPoint.z - m, maxPoint.x + m, maxPoint.y + m,
                  maxPoint.z + m);
}

bool VpcBoundingBoxAxisAligned::Intersect(const VpcLine3D& line, double& t) const {
    const auto slab = [](double min, double max, double origin, double direction) {
        const double inverse = 1 / direction;
        return std::minmax({(min - origin) * inverse, (max - origin) * inverse});
    };
    const auto [nearX, farX] = slab(minPoint.x, maxPoint.x, line.origin.x, line.direction.x);
    const auto [nearY, farY] = slab(minPoint.y, maxPoint.y, line.origin.y, line.direction.y);
    const auto [nearZ, farZ] = slab(minPoint.z, maxPoint.z, line.origin.z, line.direction.z);
    const double tFar = std::min(farZ, std::min(farY, farX));
    if (tFar < 0) {
        t = tFar;
        return false;
    }
    const double tNear = std::max(nearZ, std::max(nearY, nearX));
    t = std::min(tFar, tNear);
    return tNear <= tFar;
}

std::vector<VpcPoint3D> VpcBoundingBoxAxisAligned::GetVertexList() const {
    std::vector<VpcPoint3D> vertices;
    vertices.reserve(8);
    for (const double z : {minPoint.z, maxPoint.z}) {
        vertices.emplace_back(minPoint.x, minPoint.y, z);
        vertices.emplace_back(minPoint.x, maxPoint.y, z);
        vertices.emplace_back(maxPoint.x, maxPoint.y, z);
        vertices.emplace_back(maxPoint.x, minPoint.y, z);
    }
    return vertices;
}

bool myBoxSideSort(std::pair<int, double> a, std::pair<int, double> b) {
    return a.second < b.second;
}

bool sortProjPoints(const VpcPoint3D& a, const VpcPoint3D& b) {
    if (a.x != b.x) return a.x < b.x;
    return a.y < b.y;
}
