#pragma once

#include <memory>

#include <wx/string.h>

#include "core/util/DirectRanges.h"
#include "core/util/FileBufferStream.h"
#include "tree/construct/VpcConstructTree.h"

namespace vpc {

class PointBlock;

/// Writes a finished construction tree as a point tree file.
///
/// The nodes' point counts, and with them every position in the file, are known before any point is
/// read. So each value is written once, in its place.
class PointTreeFileWriter {
public:
    PointTreeFileWriter(VpcConstructTree& tree, unsigned long long hostValue);

    /// Writes the file; see VpcConstructTree::CreateDiskTreeFile. Each node's temporary file is
    /// removed as soon as its points are written. Throws IoError for what cannot be read or
    /// written.
    void Write(const wxString& fileName, const VpcConstructTree::Progress& progress);

private:
    void SetRoomAside(const wxString& temporaryName);
    /// Gives every node its place in the file.
    void PlacePositions();
    void WriteHeader();
    void WriteNodeRecords();
    void WriteNodeRecord(const VpcConstructNode& node);
    void WritePath(const std::vector<VpcConstructNode::Triplet>& path);
    void WriteTriplet(const VpcConstructNode::Triplet& triplet);
    void WriteTriple(const VpcConstructNode::Triple& triple);
    void WriteCellWidths(const VpcConstructNode& node);
    void WriteChildEntries(const VpcConstructNode& node);
    void WritePointBlocks();
    /// Writes the blocks of the node and of all nodes below it, and hands the node's samples to
    /// `parent` (null for the root): every point is read once and goes to all its levels.
    void WriteSubtree(VpcConstructNode& node, PointBlock* parent);
    /// Passes the node's own points to its block.
    void WriteOwnPoints(VpcConstructNode& node, PointBlock& block);
    void ReportNode(const VpcConstructNode& node);
    /// Throws when the stream has failed.
    void RequireGoodStream() const;
    unsigned long long SourceNameBytes() const;

    VpcConstructTree& tree_;
    unsigned long long hostValue_;
    unsigned long long firstRecord_ = 0;
    unsigned long long pointData_ = 0;
    unsigned long long fileSize_ = 0;
    unsigned long long pointsDone_ = 0;
    unsigned long long nextWriteBack_ = 0;
    VpcConstructTree::Progress progress_;
    wxString fileName_;
    FileBufferStream stream_;
    /// Null where the system's cache does as well or better.
    std::unique_ptr<DirectRanges> direct_;
};

}  // namespace vpc
