#pragma once

#include <array>
#include <limits>
#include <vector>

#include "tree/construct/CellGrid.h"

class VpcConstructNode;

namespace vpc {

/// Where the search for a point's leaf begins: for every cell of a fine grid over the root's box a
/// node whose box holds the cell, the deepest that was found so far.
///
/// Near the sides of the cells rounding decides which nodes hold a point. There is no hint there.
class LeafHints {
public:
    static constexpr std::size_t noCell = std::numeric_limits<std::size_t>::max();

    bool IsEmpty() const { return nodes_.empty(); }
    void Clear() { nodes_.clear(); }
    /// Lets every hint be the root.
    ///
    /// \param cells the root's cells, of which those of the grid are parts, as are the leaves
    void Make(const CellGrid& cells, VpcConstructNode& root);

    /// The number of the cell that a point lies well within, whatever its coordinates are; noCell
    /// where there is none.
    std::size_t CellOf(const std::array<double, 3>& point) const {
        std::array<long long, 3> cell;
        bool isWithin = true;
        for (unsigned axis = 0; axis < 3; ++axis) {
            const double near = (point[axis] - minimum_[axis]) * cellsPerUnit_[axis];
            const double above = near > 0.0 ? near : 0.0;  // 0 for what is no number
            cell[axis] = static_cast<long long>(above < last_[axis] ? above : last_[axis]);
            const double part = near - static_cast<double>(cell[axis]);
            isWithin &= part > margin_ && part < 1.0 - margin_;
        }
        return isWithin ? static_cast<std::size_t>((cell[2] * counts_[1] + cell[1]) * counts_[0] +
                                                   cell[0])
                        : noCell;
    }
    /// Has the processor fetch what At reads.
    void Prefetch(std::size_t cell) const {
        __builtin_prefetch(nodes_.data() + (cell < nodes_.size() ? cell : 0));
    }
    /// A node that holds all points for which CellOf gives this cell.
    VpcConstructNode* At(std::size_t cell) const { return nodes_[cell]; }
    /// Takes the deepest node that holds the cell from those between At(cell) and a leaf below it,
    /// which has a point of the cell.
    void Improve(std::size_t cell, VpcConstructNode& leaf);

private:
    bool Holds(const VpcConstructNode& node, std::size_t cell) const;

    std::array<double, 3> minimum_{};
    std::array<double, 3> cellsPerUnit_{};
    /// The number of the last cell along an axis.
    std::array<double, 3> last_{};
    std::array<long long, 3> counts_{};
    /// The part of a cell along each of its sides where there is no hint.
    double margin_ = 0.0;
    std::vector<VpcConstructNode*> nodes_;
    /// Whether no child of the cell's node holds the cell, now or ever.
    std::vector<bool> isDeepest_;
};

}  // namespace vpc
