#pragma once

#include <array>
#include <functional>
#include <memory>
#include <vector>

#include <wx/string.h>

#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "core/geometry/VpcPoint3D.h"
#include "core/geometry/VpcTriplet.h"
#include "tree/construct/CellGrid.h"
#include "tree/construct/NodePoints.h"
#include "tree/construct/SamplePattern.h"

class VpcConstructTree;

/// One node of the tree under construction: a box, its points and, once it has split, its children.
///
/// While points are added only leaves hold points; a split hands them on to the children. With
/// point memory a full leaf may instead be frozen: it stays a leaf, takes all further points of its
/// box and notes when they arrive. What its splits would have been is found out afterwards, alone
/// and in memory: they depend on the points' arrival only. The tree's finishing then pushes the
/// leaves down to the deepest level and fills the levels above with thinned copies; from then on
/// the node takes no points and gets no children.
///
/// When a temporary file fails, functions that cannot return the failure throw vpc::IoError.
class VpcConstructNode {
public:
    using Triplet = vpc::CellGrid::Triplet;
    using Triple = vpc::CellGrid::Triple;
    /// Of a point.
    using Coordinates = vpc::PointFormat::Coordinates;

    /// Registers the node in its level of the tree.
    ///
    /// \param fileName       path of the node's temporary file; empty where the points of all nodes
    ///                       share one
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
    bool Contains(double x, double y, double z) const { return cells_.Contains(x, y, z); }

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

    /// Finds the nodes that the frozen leaves below this node would have split into, and counts
    /// their points. The points themselves stay with the leaf that was frozen, until they are asked
    /// for. `shaped` is called with the number of points of every such leaf.
    void ShapeFrozenLeaves(const std::function<void(unsigned long long points)>& shaped);
    /// Hands the points of all leaves below that were frozen on to the leaves that they became.
    void SettleAll();
    /// The points of the frozen leaves below this node.
    unsigned long long FrozenPoints() const;
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
    const Triple& Minimum() const { return cells_.Minimum(); }
    const Triple& Maximum() const { return cells_.Maximum(); }
    /// The box's extent along an axis (0 x, 1 y, 2 z).
    double Extent(unsigned axis) const { return cells_.Extent(axis); }
    unsigned long long Level() const { return level_; }
    VpcConstructNode* Parent() const { return parent_; }
    const std::vector<std::unique_ptr<VpcConstructNode>>& Children() const { return children_; }
    const Triplet& ChildrenPerAxis() const { return cells_.Counts(); }
    const Triple& CellSize() const { return cells_.CellSize(); }
    /// The cells on the path from the root, whose own is 0, 0, 0, down to this node.
    std::vector<Triplet> NodeId() const;
    /// The grids that those cells belong to; the root's own is 1, 1, 1.
    std::vector<Triplet> GridPath() const;
    unsigned long long PointsOnDisk() const { return pointsOnDisk_; }
    /// Points in the buffer and on disk.
    unsigned long long PointsInAll() const { return pointsOnDisk_ + BufferedPoints(); }
    /// The number of the point that filled the node, counted as they arrived; only of a node that
    /// has split.
    unsigned long long SplitAt() const { return splitAt_; }
    double MinDistance() const { return minDistance_; }

    /// Where the node stands in the tree file that is being written: its record and its block.
    unsigned long long recordPosition = 0;
    unsigned long long blockPosition = 0;

private:
    static constexpr std::size_t cacheLine = 64;

    /// Zones of the SpillFile.
    struct Zones {
        unsigned first;
        unsigned count;
    };
    static Zones ZonesOf(const VpcConstructNode* parent, const Triplet& step);

    /// A point of a frozen leaf, and the number of its arrival.
    struct Arrival {
        Coordinates at;
        unsigned long long arrival;
    };

    unsigned long long BufferedPoints() const {
        if (HoldsPointsOfLeaves()) return 0;
        // Points on disk are counted before they are sampled, and after their file is gone.
        return points_.Count() > pointsOnDisk_ ? points_.Count() - pointsOnDisk_ : 0;
    }
    /// True between ShapeFrozenLeaves and SettlePoints of a leaf that was frozen.
    bool HoldsPointsOfLeaves() const { return IsFrozen() && !children_.empty(); }
    bool IsFrozen() const { return points_.KeepsArrivals(); }
    /// WriteBufferPointsToDisk for callers that pass the failure on: throws vpc::IoError.
    void WriteBuffer();
    /// Puts packed points into the leaves below this node; the tree counts those that none takes.
    void Place(const vpc::PackedRun& run);
    /// Finds the leaves below this node that take the points; null for those that none takes.
    /// Returns how many of the points, from the first one, come in runs that have the same leaf.
    unsigned FindLeaves(const Coordinates* points, unsigned count, VpcConstructNode** leaves);
    void FindLeavesAtOnce(const Coordinates* points, unsigned count, VpcConstructNode** leaves);
    /// The same from the root, or from what the hints know below it.
    void FindLeavesByHints(const Coordinates* points, unsigned count, VpcConstructNode** leaves);
    /// Brings points from the nodes that hold them down to the leaves.
    static void DescendAll(const Coordinates* points, unsigned count, VpcConstructNode** leaves);
    /// Puts points of a run that have the same leaf into it, as far as that is simple, and returns
    /// how many.
    unsigned StoreSome(VpcConstructNode* leaf, const vpc::PackedRun& run, unsigned first,
                       unsigned count) const;
    /// Puts points of a run, each, into its leaf.
    void StoreEach(VpcConstructNode* const* leaves, const Coordinates* points, unsigned count,
                   const vpc::PackedRun& run, unsigned first) const;
    /// Splits or freezes this leaf when it is full.
    void LeafHasGrown();
    /// Keeps the full leaf whole for the time being.
    void Freeze();
    bool CanSplit() const { return cells_.CanBeCut(SplitGrid()); }
    /// The grid that a split of this node would make.
    Triplet SplitGrid() const;
    Triplet SplitGridOct() const;
    Triplet SplitGridKd() const;
    void CreateChildren();
    /// Gives new children `points` and then the node's own points without the first `skipped`.
    void SplitInto(const Triplet& grid, const std::vector<VpcPoint3D>& points,
                   unsigned long long skipped);
    void AddChild(const Triplet& cell);
    void ShapeFrozenLeaf();
    void SettlePoints();
    /// Makes this node's children and what is below them from the points that have reached it, in
    /// the order of their arrival, and counts the points. Both ranges hold `count` points and are
    /// overwritten.
    void ShapeChildren(Arrival* points, Arrival* others, std::size_t count);
    /// The same for a node that may stay a leaf, and whose points are counted.
    void Shape(Arrival* points, Arrival* others);
    std::vector<VpcPoint3D> SamplesFromBelow() const;

    // What is needed for every point comes first, to lie together.
    std::vector<std::unique_ptr<VpcConstructNode>> children_;
    vpc::CellGrid cells_;
    alignas(cacheLine) vpc::NodePoints points_;
    /// The leaf was full and could not split, so it grows.
    bool cannotSplit_ = false;
    /// The tree looks at this node's buffer at its next flush.
    bool awaitsFlush_ = false;
    unsigned level_;
    VpcConstructTree* tree_;
    VpcConstructNode* parent_;
    unsigned long long pointsOnDisk_ = 0;
    unsigned long long splitAt_ = 0;
    Triplet step_;
    Triplet parentGrid_;
    Zones zones_;
    double minDistance_ = 0.0;
    std::string path_;

    friend class VpcConstructTree;
};
