#include "tree/construct/LeafHints.h"

#include <algorithm>

namespace vpc {

void LeafHints::Make(const CellGrid& cells, VpcConstructNode& root) {
    constexpr unsigned long long most = 1ULL << 16;
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
    for (unsigned axis = 0; axis < 3; ++axis) {
        counts_[axis] = static_cast<long long>(counts[axis]);
        last_[axis] = static_cast<double>(counts[axis] - 1);
        cellsPerUnit_[axis] = static_cast<double>(counts[axis]) / cells.Extent(axis);
    }
    nodes_.assign(counts[0] * counts[1] * counts[2], &root);
}

}  // namespace vpc
