#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <wx/string.h>

#include "core/util/VpcDefinitions.h"
#include "tree/construct/LeafHints.h"
#include "tree/construct/NodePointStore.h"
#include "tree/construct/SamplePattern.h"
#include "tree/construct/VpcConstructNode.h"
#include "tree/construct/VpcSubsampleType.h"

/// Sorts an unbounded stream of points into a spatial tree, out of core, and writes it as a point
/// tree file.
///
/// Order of calls: InitializeRootNode, AddPoints as often as there are batches, FinishAddData,
/// CreateDiskTreeFile, once. The temporary files are removed with the tree at the latest. When a
/// temporary file fails, functions that cannot return the failure throw vpc::IoError; a function
/// that returns false leaves its reason in FailureReason.
class VpcConstructTree {
public:
    using Level = std::vector<VpcConstructNode*>;
    /// Called with the points written so far and the points in all; it may throw to end the work.
    using Progress = std::function<void(unsigned long long pointsDone, unsigned long long points)>;

    /// \param workingFolder    prefix of the temporary files' names: ends with a separator
    /// \param maxPointsPerNode points at which a leaf splits
    /// \param maxLevel         deepest level that a split may reach
    /// \param is16bitColor     whether colours are written as their high bytes
    /// \param pointMemory      bytes of points to keep in memory before they go to disk, all
    ///                         nodes' to one nameless file. 0 writes a node's own file whenever
    ///                         the node's buffer is written. The tree file is the same
    ///
    /// Throws vpc::IoError when there is point memory and that file cannot be created.
    VpcConstructTree(const wxString& workingFolder, VpcTreeType treeType,
                     unsigned long long maxPointsPerNode, unsigned long long maxLevel,
                     bool is16bitColor, unsigned long long pointMemory = 0);
    ~VpcConstructTree();
    VpcConstructTree(const VpcConstructTree&) = delete;
    VpcConstructTree& operator=(const VpcConstructTree&) = delete;

    /// How parent levels are thinned, and whether random thinning is seeded from the device. A
    /// finished tree stays as it is.
    void setSubsampleType(VpcSubsampleType type, bool seedFromDevice);
    /// Makes the root over `box`, a little enlarged, in place of an earlier one with its points.
    void InitializeRootNode(VpcBoundingBoxAxisAligned box);
    /// Sets the grid of the root's split from the aspect of its extents.
    void InitializeDimensionRatios(double dx, double dy, double dz);
    /// Tells that the points that follow are of another scan, and on which grid its coordinates
    /// lie, if on any. They are then packed tighter while the tree is built; which points there are
    /// does not change.
    void BeginScan(const std::optional<vpc::CoordinateGrid>& grid);
    /// Adds `count` points; UntakenPoints counts those that find no node. Before the tree has a
    /// root and once it is finished, none does.
    void AddPoints(const VpcPoint3D* points, unsigned long long count);
    /// Adds the points of a scan's records, and makes none of them: that is faster.
    void AddRecords(const vpc::ScanRecords& records);
    /// Writes all buffers of more than `threshold` points, as far as they can be written; returns
    /// true. Does nothing with point memory, which is written when it is full.
    bool FlushBuffersToDisk(unsigned long long threshold);
    /// Ends the adding: leaves go to the deepest level, parents get their samples. False when
    /// there are no points, a temporary file fails, or points were lost when one failed before.
    /// Does nothing in a finished tree.
    [[nodiscard]] bool FinishAddData();
    // The two steps of FinishAddData. After both the tree is finished, and they do nothing more.

    /// Lists the leaves that hold points and brings them to the deepest level. Points that come
    /// after it make it necessary again. False as with FinishAddData.
    [[nodiscard]] bool BuildEndNodeList();
    /// Fills the levels above the deepest, after BuildEndNodeList's work where that is still to do.
    /// True for a tree without points, which stays unfinished.
    [[nodiscard]] bool PopulateParentNodes();
    /// The largest point count among the nodes of the deepest level.
    unsigned long long actualMaxPointsPerNode() const;

    /// Writes the point tree file, under a temporary name beside `fileName` first. False when the
    /// file cannot be opened or anything cannot be read or written; an older file is then left
    /// as it was; false, too, for a tree that is not finished. Consumes the nodes' temporary files:
    /// a second call fails, whatever became of the first.
    ///
    /// \param hostValue stored in the header untouched
    [[nodiscard]] bool CreateDiskTreeFile(const wxString& fileName, unsigned long long hostValue);
    /// Writes every non-empty node of a level as a PLY file, for inspection, and adds the number
    /// of points to `nrPoints`: the points on disk, or in a finished tree those that its file will
    /// hold. False when something cannot be read or written.
    ///
    /// \param folder prefix of the files' names: ends with a separator
    [[nodiscard]] bool WriteNodePointsTreeAtLevel(unsigned long long level, const wxString& folder,
                                                  unsigned long long& nrPoints);

    /// Has `progress` called while CreateDiskTreeFile writes.
    void SetProgress(Progress progress) { progress_ = std::move(progress); }
    /// Has `progress` called while FinishAddData sorts the points that more memory would have let
    /// AddPoints sort: with those that are sorted and all of them.
    void SetFinishProgress(Progress progress) { finishProgress_ = std::move(progress); }

    // --- What it holds --------------------------------------------------------------------------

    /// Why the last call that can fail returned false: a sentence, with the system's reason where
    /// there is one. Empty when it returned true, and where there were merely no points.
    const wxString& FailureReason() const { return failureReason_; }
    const wxString& TreeId() const { return treeId_; }
    VpcTreeType TreeType() const { return treeType_; }
    VpcConstructNode* Root() const { return root_.get(); }
    const std::vector<Level>& Levels() const { return levels_; }
    const Level& EndNodes() const { return endNodes_; }
    const VpcTriplet<unsigned long long>& DimensionRatios() const { return dimensionRatios_; }
    const std::vector<wxString>& SourceNames() const { return sourceNames_; }
    double MinimumPointDistance() const { return minimumPointDistance_; }
    /// From this size in bytes on the tree file is written past the system's cache, where that is
    /// possible, and the temporary file for all nodes is made smaller than the points are in
    /// memory. Smaller files are left to the cache, which takes them faster than a slow disk would.
    void SetLargeFile(unsigned long long bytes) { store_.SetLargeFile(bytes); }
    unsigned long long LargeFile() const { return store_.LargeFile(); }
    /// What a finished tree's points take in temporary files.
    unsigned long long TemporaryBytes() const;
    unsigned long long PointsAdded() const { return pointsAdded_; }
    /// Points that were given to the tree and are in none of its nodes.
    unsigned long long UntakenPoints() const { return untakenPoints_; }
    unsigned long long LeafCount() const { return leafCount_; }
    unsigned long long FilledLeafCount() const { return filledLeafCount_; }
    unsigned long long EmptyLeafCount() const { return emptyLeafCount_; }
    /// The probability with which random thinning keeps a point.
    double KeepFraction() const;
    /// True when the parents' samples are taken while the tree file is written, in one pass over
    /// the points in place of three. Which points are samples, and so how many, is known
    /// beforehand; until the writing the parents hold none.
    bool SamplesWhileWriting() const { return samplesWhileWriting_; }
    /// Which points a node hands to its parent, while SamplesWhileWriting.
    vpc::SamplePattern& SamplePatternOfTree();

    /// Largest values of the scans, for the file's header; set by whoever reads the scans.
    unsigned short maxRed = 0;
    unsigned short maxGreen = 0;
    unsigned short maxBlue = 0;
    double maxIntensity = 0.0;
    /// Further values of the file's header.
    std::array<double, 6> headerDoubles{1.0, 1.0, 1.0, 0.0, 0.0, 0.0};
    /// Whether the scans' colours have 16 bits a channel.
    bool is16bitColor;

private:
    friend class VpcConstructNode;

    static constexpr unsigned long long recordsInBuffer = 4096;

    enum class Stage { Adding, EndNodesListed, Finished, Written };

    /// Adds `count` points, which `pack` packs: called with the first of them and how many.
    template <class Packing>
    void AddPacked(unsigned long long count, const Packing& pack);
    /// Call this before a point or a node is added to the tree; false when none may be added any
    /// more.
    [[nodiscard]] bool BeginChange();
    /// Memory for some records of the tree file.
    char* RecordBuffer();
    /// Does `work` and returns what it returns, or false when it throws vpc::IoError.
    [[nodiscard]] bool Succeeds(const std::function<bool()>& work);
    /// Notes why a call returns false, and returns false for it.
    [[nodiscard]] bool Refuse(const wxString& reason);
    /// The points at which a node splits.
    unsigned long long FullCount() const { return std::max(maxPointsPerNode_, 1ULL); }
    void RegisterNode(VpcConstructNode& node);
    void AwaitFlush(VpcConstructNode& node);
    VpcConstructNode* DensestEndNode() const;
    [[nodiscard]] bool ListEndNodes();
    void ShapeFrozenLeaves();
    /// Brings the nodes of every level into the order of their parents' splits.
    void SortLevels();
    void PushDownEndNodes();
    void PopulateLevels();
    void PopulateLevelAbove(const Level& level);

    Stage stage_ = Stage::Adding;
    wxString failureReason_;
    wxString treeId_;
    std::vector<wxString> sourceNames_;
    VpcTreeType treeType_;
    VpcSubsampleType subsampleType_ = Subsample_Grid;
    bool seedFromDevice_ = false;
    bool samplesWhileWriting_ = false;
    std::optional<vpc::SamplePattern> samplePattern_;
    double minimumPointDistance_ = 1e45;
    VpcTriplet<unsigned long long> dimensionRatios_{1, 1, 1};
    unsigned long long pointsAdded_ = 0;
    unsigned long long untakenPoints_ = 0;
    /// Points that have arrived at the root so far. While a leaf's points are handed on afterwards,
    /// the number of the point that is.
    unsigned long long arrivals_ = 0;
    /// A failure has ended the handing on of a node's points, and what was not yet handed on is
    /// lost.
    bool lacksPoints_ = false;
    unsigned long long leafCount_ = 0;
    unsigned long long filledLeafCount_ = 0;
    unsigned long long emptyLeafCount_ = 0;
    unsigned long long maxPointsPerNode_;
    unsigned long long maxLevel_;
    /// A leaf that has as many points has to be looked at. Where nodes have files of their own it
    /// is every leaf, since its buffer may be due.
    unsigned long long growthToWatch_;
    wxString workingFolder_;
    Progress progress_;
    Progress finishProgress_;
    std::vector<Level> levels_;
    Level endNodes_;
    /// Leaves whose buffers have grown since the last flush, and that flush's threshold.
    Level awaitingFlush_;
    unsigned long long lastThreshold_ = 0;
    std::unique_ptr<char[]> recordBuffer_;
    // The store outlives the nodes, whose points lie in it.
    vpc::NodePointStore store_;
    std::unique_ptr<VpcConstructNode> root_;
    vpc::LeafHints leafHints_;
};
