#pragma once

#include <array>
#include <functional>
#include <memory>
#include <vector>

#include <wx/string.h>

#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "core/geometry/VpcPoint3D.h"
#include "core/geometry/VpcTriplet.h"
#include "tree/construct/NodePoints.h"
#include "tree/construct/SamplePattern.h"

class VpcConstructTree;

/// One node of the tree under construction: a box, its points (in memory and in a temporary file,
/// the node's own or all nodes' common one) and, once it has split, its children.
///
/// While points are added only leaves hold points; a split hands them on to the children. The
/// tree's finishing then pushes the leaves down to the deepest level and fills the levels above
/// with thinned copies; from then on the node takes no points and gets no children.
///
/// When a temporary file fails, functions that cannot return the failure throw vpc::IoError.
class VpcConstructNode {
public:
    using Triplet = VpcTriplet<unsigned long long>;
    using Triple = std::array<double, 3>;

    /// Registers the node in its level of the tree.
    ///
    /// \param fileName       path of the node's temporary file
    /// \param parent         null for the root
    /// \param step           the node's cell in its parent's grid; 0, 0, 0 for the root
    /// \param parentGrid     the parent's children per axis; 1, 1, 1 for the root
    VpcConstructNode(VpcConstructTree* tree, const wxString& fileName,
                     const VpcBoundingBoxAxisAligned& box, VpcConstructNode* parent,
                     const Triplet& step, const Triplet& parentGrid);
    VpcConstructNode(const VpcConstructNode&) = delete;
    VpcConstructNode& operator=(const VpcConstructNode&) = delete;

    // --- While points are added ---------------------------------------------------------------

    /// Gives the point to the leaf below this node whose box contains it. A point that no child's
    /// box contains is dropped, as is every point in a finished tree; the tree counts them.
    void AddPoint(const VpcPoint3D& point);
    /// The leaf below this node that takes a point at (x, y, z); null where no child does. A leaf
    /// takes every point itself.
    VpcConstructNode* FindLeaf(double x, double y, double z);
    /// Minimum inclusive, maximum exclusive: neighbours share no point.
    bool Contains(double x, double y, double z) const {
        return minimum_[0] <= x && x < maximum_[0] && minimum_[1] <= y && y < maximum_[1] &&
               minimum_[2] <= z && z < maximum_[2];
    }

    /// Appends the buffered points to the node's file, which is created if need be, and frees their
    /// memory. False when the file cannot be written; the points then stay in the buffer. While
    /// points are added a caller may ignore that: the next call tries again, and the finishing
    /// makes the last call and reports its failure.
    bool WriteBufferPointsToDisk();
    /// Writes the buffers of this node and all nodes below that hold more than `threshold` points,
    /// as far as they can be written.
    void FlushBuffersToDisk(unsigned long long threshold);

    /// Turns this leaf into a parent: its points move on to new children.
    void SplitNode();
    // These split like SplitNode but take `points` in place of the points on disk, which the caller
    // has read and which are removed. The buffered points follow them. If there are more points on
    // disk than were given, the surplus is lost, and the tree counts it.

    /// Splits into a grid: the root by the tree's dimension ratios, other nodes into 2 x 2 x 2.
    void SplitNodeOct(std::vector<VpcPoint3D>& points);
    /// Splits into two halves across the longest side.
    void SplitNodeKd(std::vector<VpcPoint3D>& points);
    /// Sets the children per axis and the cell size of a leaf as SplitNodeOct does, without any
    /// children.
    void ComputeNumberOfChildrenOct();
    /// The number of the child cell that holds the point; all ones where there is none.
    unsigned long long ComputeNodeIndex(const VpcPoint3D& point) const;
    /// The number of a child cell: x runs fastest, then y, then z.
    unsigned long long ComputeNodeIndex(unsigned long long ix, unsigned long long iy,
                                        unsigned long long iz) const;

    // --- While the tree is finished -----------------------------------------------------------

    /// Counts the leaves below this node in the tree and lists those that hold points.
    void AddEndNodes();
    /// Gives this leaf one child with the same box, to which its points go, and returns it. A node
    /// that has children, or whose tree is finished, stays as it is and returns itself.
    VpcConstructNode* DropNodeLevel();
    /// Renames the node's file, which is called `oldName`, to this node's file name, overwriting.
    [[nodiscard]] bool DropFileName(const wxString& oldName);

    /// Makes the node ready to receive its children's samples.
    void ResetNodeAsParentLOD();
    /// Hands a thinned copy of this node's points to its parent.
    void PopulateParentLOD();
    /// Sets this level's point spacing and, from it, the parent's.
    void UpdateMinDistances();
    /// The point spacing of this node's level.
    double ComputePointMinDistanceForLevel() const;
    void SubsampleRandom(std::vector<VpcPoint3D>& in, std::vector<VpcPoint3D>& out);
    void SubsampleGrid(std::vector<VpcPoint3D>& in, std::vector<VpcPoint3D>& out);
    /// Appends the point to the buffer. The second argument is not used.
    void AddPointFromChild(const VpcPoint3D& point, unsigned long long childIndex);
    /// Counts in the parent the points that PopulateParentLOD would hand to it, and moves none:
    /// the writing of the tree file will.
    void PlanParentLOD(vpc::SamplePattern& pattern);

    /// The points on disk, in their order; what is only in the buffer is not among them. Samples
    /// that the node will get while the tree file is written are taken from the nodes below.
    [[nodiscard]] std::vector<VpcPoint3D> GetPointsFromDisk();
    /// Visits the records of the points on disk in order, in large pieces. `visit` may change them.
    void VisitRecords(const std::function<void(char* records, unsigned long long count)>& visit);
    /// Deletes the node's file and frees its memory. The counts stay.
    void RemoveDiskFile();

    // --- What it holds --------------------------------------------------------------------------

    wxString FileName() const;
    VpcBoundingBoxAxisAligned Box() const;
    const Triple& Minimum() const { return minimum_; }
    const Triple& Maximum() const { return maximum_; }
    /// The box's extent along an axis (0 x, 1 y, 2 z).
    double Extent(unsigned axis) const { return maximum_[axis] - minimum_[axis]; }
    unsigned long long Level() const { return level_; }
    VpcConstructNode* Parent() const { return parent_; }
    const std::vector<std::unique_ptr<VpcConstructNode>>& Children() const { return children_; }
    const Triplet& ChildrenPerAxis() const { return childrenPerAxis_; }
    const Triple& CellSize() const { return cellSize_; }
    /// The cells on the path from the root, whose own is 0, 0, 0, down to this node.
    std::vector<Triplet> NodeId() const;
    /// The grids that those cells belong to; the root's own is 1, 1, 1.
    std::vector<Triplet> GridPath() const;
    unsigned long long PointsOnDisk() const { return pointsOnDisk_; }
    /// Points in the buffer and on disk.
    unsigned long long PointsInAll() const { return pointsOnDisk_ + BufferedPoints(); }
    double MinDistance() const { return minDistance_; }

    /// Where the node stands in the tree file that is being written: its record and its block.
    unsigned long long recordPosition = 0;
    unsigned long long blockPosition = 0;

private:
    unsigned long long BufferedPoints() const {
        // Points on disk are counted before they are sampled, and after their file is gone.
        return points_.Count() > pointsOnDisk_ ? points_.Count() - pointsOnDisk_ : 0;
    }
    /// WriteBufferPointsToDisk for callers that pass the failure on: throws vpc::IoError.
    void WriteBuffer();
    /// Appends a point to this leaf, and splits the leaf when that fills it.
    void StoreInLeaf(const VpcPoint3D& point) {
        point.ToRecord(points_.Append());
        LeafHasGrown();
    }
    void LeafHasGrown();
    /// False where a coordinate's precision cannot tell the cells of a split apart, or where the
    /// children would have no extent along an axis and so take no point.
    bool CanSplit() const;
    /// The grid that a split of this node would make.
    Triplet SplitGrid() const;
    Triplet SplitGridOct() const;
    Triplet SplitGridKd() const;
    void SetChildGrid(const Triplet& grid);
    void CreateChildren();
    /// Gives new children `points` and then the node's own points without the first `skipped`.
    void SplitInto(const Triplet& grid, const std::vector<VpcPoint3D>& points,
                   unsigned long long skipped);
    void AddChild(const Triplet& cell, unsigned long long index);
    VpcConstructNode* ChildContaining(double x, double y, double z) const;
    unsigned long long CellOf(double x, double y, double z) const;
    void DistributeRecords(const char* records, unsigned long long count);
    std::vector<VpcPoint3D> SamplesFromBelow() const;

    VpcConstructTree* tree_;
    VpcConstructNode* parent_;
    vpc::NodePoints points_;
    unsigned long long pointsOnDisk_ = 0;
    Triple minimum_;
    Triple maximum_;
    Triple cellSize_{};
    Triplet childrenPerAxis_{0, 0, 0};
    Triplet step_;
    Triplet parentGrid_;
    unsigned level_;
    /// The leaf was full and could not split, so it grows.
    bool cannotSplit_ = false;
    /// The tree looks at this node's buffer at its next flush.
    bool awaitsFlush_ = false;
    std::vector<std::unique_ptr<VpcConstructNode>> children_;
    double minDistance_ = 0.0;

    friend class VpcConstructTree;
};
