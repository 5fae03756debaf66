#pragma once

#include <forward_list>
#include <memory>
#include <memory_resource>
#include <span>
#include <utility>
#include <vector>

#include <wx/string.h>

#include "core/geometry/VpcNodeIndex.h"
#include "tree/disk/VpcDiskNode.h"
#include "tree/disk/VpcTree.h"
#include "tree/file/PointTreeHeader.h"

class VpcPoint3D;

namespace vpc {
class PointTreeReader;
}

/// A point tree file whose hierarchy is in memory; its points are read node by node from the file,
/// which stays open. One thread at a time.
class VpcDiskTree : public VpcTree {
public:
    using NodeList = std::vector<VpcDiskNode*>;

    VpcDiskTree();
    ~VpcDiskTree() override;

    /// The version of the loaded file. Loading does not judge it.
    unsigned long long vptVersion = 0;

    /// The version of a point tree file; 0 where it cannot be read.
    static unsigned long long ReadFileVersion(const wxString& fileName);

    /// Loads the hierarchy. False, with a line in the log, where Load would throw IoError.
    bool CreateFromFile(const wxString& fileName);
    /// Loads the hierarchy. A file without levels gives a tree without root.
    ///
    /// Throws IoError when levels are loaded already, which stay; and, leaving an empty tree, when
    /// the file cannot be read or does not hold together: sizes and positions beyond its end, point
    /// records of another size, nodes without a parent or in another place than their path says.
    void Load(std::unique_ptr<vpc::PointTreeReader> file);

    /// Sets the root's children per axis so that they are about cubes.
    void InitializeDimensionRatios(double dx, double dy, double dz);
    /// Makes the root, with a box that is a little larger than the one between the corners.
    /// \param record, block positions in the file, of the root's record and of its point block
    void InitiateRootNode(const VpcPoint3D& min, const VpcPoint3D& max, unsigned long long record,
                          unsigned long long block, unsigned long long pointsOffset,
                          unsigned long long nrPoints);

    /// (nodes, points) of every level, the root's first.
    std::vector<std::pair<unsigned long long, unsigned long long>> GetNodePointSummary() const;
    /// The points of the deepest level, which holds each point once.
    unsigned long long totalNrPoints() const;
    /// The point spacing of `level`, which must be one of the tree's; 0 where it has no nodes.
    double GetLevelMinDistance(unsigned long long level) const;
    /// Writes what the hierarchy holds as text, with every node when `detailed`. False when the
    /// file cannot be opened or written.
    bool WriteSummary(const wxString& fileName, bool detailed) const;

    const wxString& GetFileName() const { return fileName_; }
    const vpc::PointTreeHeader& GetHeader() const { return header_; }
    unsigned long long GetNrLevels() const { return header_.levels; }
    /// The nodes of every level, in the file's order, which the tree owns.
    const std::vector<NodeList>& GetLevels() const { return levels_; }
    /// Null in an empty tree.
    VpcDiskNode* GetRootNode() const { return rootNode_; }
    /// Children per axis of the root's grid.
    const VpcTriplet<unsigned long long>& GetDimensionRatios() const { return dimensionRatios_; }

    /// Reads point records with one seek and one read: those that the file really has, whole ones
    /// only. They are valid until the next call.
    std::span<const char> ReadPointRecords(unsigned long long position, unsigned long long count);
    /// How many points fewer that gave than were asked for, in all calls since the tree was loaded.
    unsigned long long MissingPoints() const { return missingPoints_; }
    /// Whether it ever gave fewer: views since then may lack points.
    bool LacksPoints() const { return missingPoints_ != 0; }
    /// A sentence that names the file; empty where no points are missing.
    wxString WhyPointsAreMissing() const;

private:
    friend class VpcDiskNode;

    /// Called by a node's constructor; the tree lists the node from then on.
    void AddToLevel(VpcDiskNode& node);

    // These throw IoError.

    void LoadHeader();
    void LoadNodes();
    void LoadNode(const vpc::NodeRecord& record);
    [[noreturn]] void Refuse(const wxString& problem) const;

    VpcDiskNode* FindParent(const vpc::NodeRecord& record);
    VpcDiskNode& AddChild(VpcDiskNode& parent, const VpcTriplet<unsigned long long>& cell,
                          const vpc::NodeRecord& record);
    void Clear();

    /// Makes the buffer of point records at least that large.
    void ReserveRecords(unsigned long long bytes);
    /// Copies values to where they stay until the tree is cleared.
    template <class T>
    std::span<const T> Keep(const std::vector<T>& values);
    /// Gives a node the values that its constructor does not take.
    void Complete(VpcDiskNode& node, const vpc::NodeRecord& record);

    vpc::PointTreeHeader header_;
    VpcTriplet<unsigned long long> dimensionRatios_{1, 1, 1};
    wxString fileName_;
    /// The nodes, which must not move until the tree is cleared. Their order does not matter.
    std::forward_list<VpcDiskNode> nodes_;
    VpcDiskNode* rootNode_ = nullptr;
    std::vector<NodeList> levels_;
    /// A buffer of FindParent, which is called for every node.
    VpcNodeIndex parentPath_;
    /// The nodes' lists of numbers, which never change. One resource for all takes far less memory
    /// than a block for each list.
    std::pmr::monotonic_buffer_resource numbers_;
    std::unique_ptr<vpc::PointTreeReader> file_;
    /// Holds the point records of one node.
    std::unique_ptr<char[]> records_;
    unsigned long long recordsCapacity_ = 0;
    unsigned long long missingPoints_ = 0;
};
