#include "tree/construct/LeafHints.h"

#include <algorithm>
#include <cmath>

#include "tree/construct/VpcConstructNode.h"

namespace vpc {

namespace {

/// Wide enough for all that is rounded here and in the boxes of the nodes, where IsPrecise holds.
constexpr double safeMargin = 1e-6;

/// Whether coordinates of the box are much finer than the margins along this axis.
bool isPrecise(const CellGrid& box, unsigned axis, double cellSize) {
    constexpr double roundings = 64.0 * std::numeric_limits<double>::epsilon();
    const double largest = std::max(std::abs(box.Minimum()[axis]), std::abs(box.Maximum()[axis]));
    return cellSize * safeMargin > largest * roundings;
}

}  // namespace

void LeafHints::Make(const CellGrid& cells, VpcConstructNode& root) {
    constexpr unsigned long long most = 1ULL << 17;
    std::array<unsigned long long, 3> counts{cells.Counts().first, cells.Counts().second,
                                             cells.Counts().third};
    CellGrid::Triple sizes = cells.CellSize();
    // Halved as a node's cells are, so that no cell lies across the side of a leaf of its size.
    while (counts[0] * counts[1] * counts[2] * 2 <= most) {
        const auto longest =
            static_cast<std::size_t>(std::max_element(sizes.begin(), sizes.end()) - sizes.begin());
        counts[longest] *= 2;
        sizes[longest] /= 2.0;
    }
    minimum_ = cells.Minimum();
    margin_ = safeMargin;
    for (unsigned axis = 0; axis < 3; ++axis) {
        counts_[axis] = static_cast<long long>(counts[axis]);
        last_[axis] = static_cast<double>(counts[axis] - 1);
        cellsPerUnit_[axis] = static_cast<double>(counts[axis]) / cells.Extent(axis);
        if (!isPrecise(cells, axis, sizes[axis])) margin_ = 1.0;  // nothing lies within a cell
    }
    nodes_.assign(counts[0] * counts[1] * counts[2], &root);
    isDeepest_.assign(nodes_.size(), false);
}

void LeafHints::Improve(std::size_t cell, VpcConstructNode& leaf) {
    if (isDeepest_[cell]) return;
    VpcConstructNode* node = &leaf;
    while (node != nodes_[cell] && !Holds(*node, cell)) node = node->Parent();
    nodes_[cell] = node;
    isDeepest_[cell] = node != &leaf;
}

bool LeafHints::Holds(const VpcConstructNode& node, std::size_t cell) const {
    for (unsigned axis = 0; axis < 3; ++axis) {
        const auto count = static_cast<std::size_t>(counts_[axis]);
        const auto at = static_cast<double>(cell % count);
        cell /= count;
        // Half of the margin is for the rounding here, the other half for that of CellOf.
        const double begin = minimum_[axis] + (at + margin_ / 2.0) / cellsPerUnit_[axis];
        const double end = minimum_[axis] + (at + 1.0 - margin_ / 2.0) / cellsPerUnit_[axis];
        if (!(node.Minimum()[axis] <= begin && end <= node.Maximum()[axis])) return false;
    }
    return true;
}

}  // namespace vpc
