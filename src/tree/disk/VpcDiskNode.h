#pragma once

#include <span>
#include <vector>

#include "core/geometry/BoxCorners.h"
#include "core/geometry/VpcNodeIndex.h"
#include "platform/OdCmEntityColor.h"
#include "platform/OdGePoint3d.h"
#include "tree/disk/NodePath.h"
#include "tree/file/NodeRecord.h"
#include "tree/file/PointTreeLayout.h"

class VpcDiskTree;

/// A node of a loaded point tree. It holds all that its record says, but not its points, which are
/// read from the file when they are asked for.
class VpcDiskNode {
public:
    using Triplet = VpcTriplet<unsigned long long>;
    using ChildEntry = vpc::NodeRecord::ChildEntry;

    /// The node's box; converts to VpcBoundingBoxAxisAligned.
    vpc::BoxCorners box;
    /// The points divided by the square of the box's diagonal.
    double density;
    /// Positions in the file: of the node's record, its point block and its first point, and of the
    /// parent's record and point block. Only that of the first point is used.
    unsigned long long recordPosition;
    unsigned long long pointBlock;
    unsigned long long pointsOffset;
    unsigned long long parentRecord = 0;
    unsigned long long parentPointBlock = 0;
    /// Positions of record and point block for every cell of the child grid; kept, but not used.
    /// The tree owns them.
    std::span<const ChildEntry> childEntries;
    VpcDiskTree* tree;
    /// Null for the root.
    VpcDiskNode* parent;
    /// The cell that the path from the root takes at every level; (0, 0, 0) for the root.
    const vpc::NodePath hNodeIndex;
    /// The grid that this cell is one of; (1, 1, 1) for the root.
    const vpc::NodePath hNrNodes;
    /// By cell number. The tree owns them.
    std::vector<VpcDiskNode*> children;
    /// Cells of the child grid along every axis.
    PointTreeLayout::ChildGrid childGrid;
    /// The split coordinates along x, then along y, then along z, as many as the grid has cells
    /// along the axis; see SplitCoordinates. The tree owns them.
    std::span<const double> splitCoordinates;
    /// Points that the node stores.
    unsigned long long nrPoints;
    /// Point spacing of the node's level.
    double minDistance = 0.0;

    /// Appends the node to its level of `ownerTree`, which lists it from then on: it must stay
    /// where it is as long as the tree. The parent's list of children is the caller's to extend.
    /// \param record, block positions in the file
    VpcDiskNode(VpcDiskTree* ownerTree, VpcDiskNode* parentNode, const Triplet& index,
                const Triplet& grid, const vpc::BoxCorners& nodeBox, unsigned long long record,
                unsigned long long block, unsigned long long pointsPosition,
                unsigned long long pointCount);
    VpcDiskNode(const VpcDiskNode&) = delete;
    VpcDiskNode& operator=(const VpcDiskNode&) = delete;

    /// 0 for the root.
    unsigned long long Level() const { return hNodeIndex.size() - 1; }
    /// The split coordinates along x (0), y (1) or z (2).
    std::span<const double> SplitCoordinates(int axis) const;

    /// Number of a cell of the child grid: x fastest, then y, then z.
    unsigned long long ComputeNodeIndex(unsigned long long x, unsigned long long y,
                                        unsigned long long z) const {
        return (z * childGrid.y + y) * childGrid.x + x;
    }
    /// The child in that cell; null where its number is beyond the children.
    VpcDiskNode* GetChildNodeFromTriplet(unsigned long long x, unsigned long long y,
                                         unsigned long long z) const {
        const unsigned long long cell = ComputeNodeIndex(x, y, z);
        return cell < children.size() ? children[cell] : nullptr;
    }
    /// The node that `path` leads to, which is this one or one below it; null where the path ends
    /// above this node or there is no such node. Its steps down to this node are not checked.
    VpcDiskNode* GetNodeFromIndex(const VpcNodeIndex& path);

    /// Reads the node's points and writes those that pass the tree's sections and clippings to the
    /// slots `firstSlot`, `firstSlot` + 1, ... of the three arrays. A colour keeps its method; a
    /// size is at least 1.
    /// \param maxCount the most points to write, counted from `firstSlot`
    /// \param capacity slots of the arrays: nothing is written to this one or beyond, whatever
    ///        `maxCount` allows
    /// \return the points written; fewer than the node has where the file has become shorter
    unsigned long long AddPointsFromDisk(unsigned long long firstSlot, OdGePoint3d* coords,
                                         OdCmEntityColor* colors, double* sizes,
                                         unsigned long long maxCount,
                                         unsigned long long capacity = ~0ULL);
    /// Appends the stored intensities of the points that AddPointsFromDisk gives, the first
    /// `maxCount` of them.
    /// \return how many were appended
    unsigned long long AppendIntensities(std::vector<double>& intensities,
                                         unsigned long long maxCount) const;
};
