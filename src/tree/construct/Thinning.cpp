#include "tree/construct/Thinning.h"

#include <algorithm>
#include <cmath>

#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "core/geometry/VpcSimplePointTools.h"
#include "tree/construct/VpcPointGrid3D.h"
#include "tree/construct/VpcRandomSampler.h"

namespace vpc {

double keepFraction(VpcTreeType treeType) {
    return treeType == Tree_KdTree_Symmetric ? 0.5 : 0.25;
}

double levelSpacing(VpcTreeType treeType, double deepestSpacing, int levelsAboveDeepest,
                    const std::array<double, 3>& extents) {
    const double growth = treeType == Tree_Octree ? 2.0 : std::cbrt(2.0);
    const double spacing = deepestSpacing * std::pow(growth, levelsAboveDeepest);
    const double shortest = std::min({extents[0], extents[1], extents[2]});
    const double wanted = std::min(shortest, spacing);
    constexpr double mostCells = 400.0;
    double largestCell = 0.0;
    for (const double extent : extents) {
        const double cells = std::min(std::max(extent / wanted, 1.0), mostCells);
        largestCell = std::max(largestCell, extent / cells);
    }
    return std::min(shortest, largestCell);
}

double parentSpacingFactor(VpcTreeType treeType) {
    // The octree's factor is 3, although its cells double from level to level.
    return treeType == Tree_Octree ? 3.0 : std::cbrt(3.0);
}

std::vector<VpcPoint3D> thinnedRandomly(const std::vector<VpcPoint3D>& points, double fraction,
                                        bool seedFromDevice) {
    // Every node has its own sampler with the same seed, so that runs repeat.
    VpcRandomSampler sampler(fraction, seedFromDevice, 0);
    std::vector<VpcPoint3D> kept;
    for (const VpcPoint3D& point : points)
        if (sampler.KeepNext()) kept.push_back(point);
    if (kept.empty() && !points.empty()) kept.push_back(points.front());
    return kept;
}

std::vector<VpcPoint3D> thinnedByGrid(std::vector<VpcPoint3D>& points, double spacing) {
    VpcPoint3D lowest;
    VpcPoint3D highest;
    VpcSimplePointTools::DeterminePointsMinMaxPoints(points, lowest, highest);
    VpcBoundingBoxAxisAligned box(lowest, highest);
    double side = box.sortedSides.back().second;
    for (const auto& [axis, length] : box.sortedSides) {
        if (length <= 0.0) continue;
        side = length;
        break;
    }
    box.AddMargin(side / 5000);
    VpcPointGrid3D grid(spacing, box, spacing);
    grid.FilterPoints(points);
    return grid.GetFilteredPoints(points);
}

}  // namespace vpc
