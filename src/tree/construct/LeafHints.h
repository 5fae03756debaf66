#pragma once

#include <array>
#include <vector>

#include "tree/construct/CellGrid.h"

class VpcConstructNode;

namespace vpc {

/// Where points went: for every cell of a fine grid over the root's box the node that took the last
/// point there. The next one mostly goes to the same leaf, or to one that is near it in the tree.
class LeafHints {
public:
    bool IsEmpty() const { return nodes_.empty(); }
    void Clear() { nodes_.clear(); }
    /// Lets every hint be the root.
    ///
    /// \param cells the root's cells, of which those of the grid are parts, as are the leaves
    void Make(const CellGrid& cells, VpcConstructNode& root);

    /// The hint for a point, whatever its coordinates are; to be set to a node that takes it.
    VpcConstructNode*& At(const std::array<double, 3>& point) {
        const auto x = Cell(point, 0);
        const auto y = Cell(point, 1);
        const auto z = Cell(point, 2);
        return nodes_[static_cast<std::size_t>((z * counts_[1] + y) * counts_[0] + x)];
    }

private:
    long long Cell(const std::array<double, 3>& point, unsigned axis) const {
        const double near = (point[axis] - minimum_[axis]) * cellsPerUnit_[axis];
        const double above = near > 0.0 ? near : 0.0;  // 0 for what is no number
        return static_cast<long long>(above < last_[axis] ? above : last_[axis]);
    }

    std::array<double, 3> minimum_{};
    std::array<double, 3> cellsPerUnit_{};
    /// The number of the last cell along an axis.
    std::array<double, 3> last_{};
    std::array<long long, 3> counts_{};
    std::vector<VpcConstructNode*> nodes_;
};

}  // namespace vpc
