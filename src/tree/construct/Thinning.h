#pragma once

#include <array>
#include <vector>

#include "core/geometry/VpcPoint3D.h"
#include "core/util/VpcDefinitions.h"

namespace vpc {

/// The probability with which random thinning keeps a point.
double keepFraction(VpcTreeType treeType);
/// The point spacing of a node.
///
/// \param deepestSpacing     that of the deepest level
/// \param levelsAboveDeepest how many levels the node stands above that
/// \param extents            of the node's box
double levelSpacing(VpcTreeType treeType, double deepestSpacing, int levelsAboveDeepest,
                    const std::array<double, 3>& extents);
/// How many times the spacing of a node is that which its parent is given.
double parentSpacingFactor(VpcTreeType treeType);

/// A random share of the points in their order, at least one where there are any. Without a seed
/// from the system's random device, the share depends on the number of points alone.
std::vector<VpcPoint3D> thinnedRandomly(const std::vector<VpcPoint3D>& points, double fraction,
                                        bool seedFromDevice);
/// One point of every cell of a grid whose cells are `spacing` wide: the one nearest to its centre.
/// Throws std::bad_alloc when there is no memory for the grid.
std::vector<VpcPoint3D> thinnedByGrid(std::vector<VpcPoint3D>& points, double spacing);

}  // namespace vpc
