#include "tree/construct/PointTreeFileWriter.h"

#include <cstring>
#include <limits>

#include <wx/translation.h>

#include "core/util/FileTools.h"
#include "core/util/IoError.h"
#include "core/util/ReplacementFile.h"
#include "tree/construct/PointBlock.h"
#include "tree/file/PointTreeLayout.h"

namespace vpc {

namespace {

/// Points between two requests to begin the writing to the disk: some 128 MiB.
constexpr unsigned long long pointsPerWriteBack = 2400000;
constexpr unsigned long long never = std::numeric_limits<unsigned long long>::max();

PointTreeLayout::ChildGrid childGridOf(const VpcConstructNode& node) {
    const auto& grid = node.ChildrenPerAxis();
    return {grid.first, grid.second, grid.third};
}

/// Replaces the 16-bit colours in `records` by their high bytes.
void keepHighBytes(char* records, unsigned long long count) {
    for (char* record = records; record != records + count * recordSize; record += recordSize) {
        unsigned short colour[3];
        char* stored = record + VpcPoint3D::recordOffsetRed;
        std::memcpy(colour, stored, sizeof colour);
        for (unsigned short& channel : colour) channel = static_cast<unsigned short>(channel >> 8);
        std::memcpy(stored, colour, sizeof colour);
    }
}

}  // namespace

PointTreeFileWriter::PointTreeFileWriter(VpcConstructTree& tree, unsigned long long hostValue)
    : tree_(tree), hostValue_(hostValue) {
}

void PointTreeFileWriter::Write(const wxString& fileName,
                                const VpcConstructTree::Progress& progress) {
    progress_ = progress;
    fileName_ = fileName;
    // Only a file that replaces another is synced at its end.
    nextWriteBack_ = FileTools::FileExists(fileName) ? pointsPerWriteBack : never;
    ReplacementFile file(fileName, tree_.TreeId());
    stream_.StreamOpen(file.TemporaryName(), FileModeWrite);
    RequireGoodStream();
    PlacePositions();
    SetRoomAside(file.TemporaryName());
    WriteHeader();
    WriteNodeRecords();
    WritePointBlocks();
    if (direct_) direct_->Finish();
    direct_.reset();
    stream_.StreamClose();
    RequireGoodStream();
    file.Commit();
}

void PointTreeFileWriter::SetRoomAside(const wxString& temporaryName) {
    // The temporary file shrinks while this one grows: together they take the room of the whole
    // result and hardly more. What is not set aside is the beginning, with the upper levels, which
    // grows no faster than the temporary file shrinks, in whatever order the leaves are written.
    stream_.StreamPreallocate(tree_.TemporaryBytes(), fileSize_);
    if (fileSize_ < tree_.LargeFile()) return;
    auto writer = DirectWriter::Open(FileTools::ToNativePath(temporaryName), fileSize_, fileName_);
    if (writer != nullptr) direct_ = std::make_unique<DirectRanges>(std::move(writer));
}

void PointTreeFileWriter::RequireGoodStream() const {
    if (!stream_.IsStreamGood())
        throw IoError(fileName_, wxGetTranslation("cannot be written"), stream_.SystemError());
}

void PointTreeFileWriter::PlacePositions() {
    using namespace PointTreeLayout;
    firstRecord_ = firstNodeRecordPosition(SourceNameBytes(), tree_.Levels().size());
    Position position = firstRecord_;
    for (const auto& level : tree_.Levels()) {
        for (VpcConstructNode* node : level) {
            node->recordPosition = position;
            position += PointTreeLayout::recordSize(node->Level(), childGridOf(*node));
        }
    }
    pointData_ = position;
    for (const auto& level : tree_.Levels()) {
        for (VpcConstructNode* node : level) {
            node->blockPosition = position;
            position += pointBlockHeaderSize + node->PointsOnDisk() * vpc::recordSize;
        }
    }
    fileSize_ = position;
}

unsigned long long PointTreeFileWriter::SourceNameBytes() const {
    unsigned long long bytes = PointTreeLayout::wordSize;
    for (const wxString& name : tree_.SourceNames())
        bytes += PointTreeLayout::wordSize + PointTreeLayout::characterSize * name.length();
    return bytes;
}

void PointTreeFileWriter::WriteHeader() {
    stream_.StreamWriteUint64(PointTreeLayout::version);
    stream_.StreamWriteUint64(static_cast<unsigned long long>(tree_.TreeType()));
    stream_.StreamWriteDouble(tree_.MinimumPointDistance());
    stream_.StreamWriteUint64(tree_.actualMaxPointsPerNode());
    stream_.StreamWriteBool(false);
    stream_.StreamWriteUint16(tree_.maxRed);
    stream_.StreamWriteUint16(tree_.maxGreen);
    stream_.StreamWriteUint16(tree_.maxBlue);
    stream_.StreamWriteDouble(tree_.maxIntensity);
    for (const double value : tree_.headerDoubles) stream_.StreamWriteDouble(value);
    stream_.StreamWriteUint64(hostValue_);
    stream_.StreamWriteUint64(firstRecord_);
    stream_.StreamWriteUint64(pointData_);
    stream_.StreamWriteUint64(tree_.SourceNames().size());
    for (const wxString& name : tree_.SourceNames()) {
        stream_.StreamWriteUint64(name.length());
        stream_.StreamWriteString(name);
    }
    stream_.StreamWriteUint64(vpc::recordSize);
    stream_.StreamWriteUint64(tree_.Levels().size());
    for (const auto& level : tree_.Levels()) stream_.StreamWriteUint64(level.size());
}

void PointTreeFileWriter::WriteNodeRecords() {
    for (const auto& level : tree_.Levels())
        for (const VpcConstructNode* node : level) WriteNodeRecord(*node);
}

void PointTreeFileWriter::WriteNodeRecord(const VpcConstructNode& node) {
    stream_.StreamWriteUint64(node.Level());
    stream_.StreamWriteDouble(node.MinDistance());
    WritePath(node.NodeId());
    WritePath(node.GridPath());
    WriteTriple(node.Minimum());
    WriteTriple(node.Maximum());
    stream_.StreamWriteUint64(node.PointsOnDisk());
    WriteTriplet(node.ChildrenPerAxis());
    WriteCellWidths(node);
    stream_.StreamWriteUint64(node.recordPosition);
    stream_.StreamWriteUint64(node.blockPosition);
    stream_.StreamWriteUint64(node.blockPosition + PointTreeLayout::pointBlockHeaderSize);
    const VpcConstructNode* parent = node.Parent();
    stream_.StreamWriteUint64(parent != nullptr ? parent->recordPosition : 0);
    stream_.StreamWriteUint64(parent != nullptr ? parent->blockPosition : 0);
    WriteChildEntries(node);
}

void PointTreeFileWriter::WritePath(const std::vector<VpcConstructNode::Triplet>& path) {
    for (const auto& triplet : path) WriteTriplet(triplet);
}

void PointTreeFileWriter::WriteTriplet(const VpcConstructNode::Triplet& triplet) {
    stream_.StreamWriteUint64(triplet.first);
    stream_.StreamWriteUint64(triplet.second);
    stream_.StreamWriteUint64(triplet.third);
}

void PointTreeFileWriter::WriteTriple(const VpcConstructNode::Triple& triple) {
    for (const double value : triple) stream_.StreamWriteDouble(value);
}

void PointTreeFileWriter::WriteCellWidths(const VpcConstructNode& node) {
    const auto& grid = node.ChildrenPerAxis();
    const unsigned long long counts[] = {grid.first, grid.second, grid.third};
    for (unsigned axis = 0; axis < 3; ++axis)
        for (unsigned long long i = 0; i < counts[axis]; ++i)
            stream_.StreamWriteDouble(node.CellSize()[axis]);
}

void PointTreeFileWriter::WriteChildEntries(const VpcConstructNode& node) {
    const auto& children = node.Children();
    // A leaf that was pushed down has an entry for a child that it does not have.
    for (unsigned long long i = 0; i < childGridOf(node).cells(); ++i) {
        stream_.StreamWriteUint64(i < children.size() ? children[i]->recordPosition : 0);
        stream_.StreamWriteUint64(i < children.size() ? children[i]->blockPosition : 0);
    }
}

void PointTreeFileWriter::WritePointBlocks() {
    if (tree_.SamplesWhileWriting()) {
        WriteSubtree(*tree_.Root(), nullptr);
        return;
    }
    for (const auto& level : tree_.Levels()) {
        for (VpcConstructNode* node : level) {
            PointBlock block(stream_, direct_.get(), *node, nullptr, nullptr);
            WriteOwnPoints(*node, block);
        }
    }
}

void PointTreeFileWriter::WriteSubtree(VpcConstructNode& node, PointBlock* parent) {
    PointBlock block(stream_, direct_.get(), node, parent, &tree_.SamplePatternOfTree());
    if (node.Children().empty()) {
        WriteOwnPoints(node, block);
        return;
    }
    for (const auto& child : node.Children()) WriteSubtree(*child, &block);
    block.Finish();
    if (!block.IsComplete())
        throw IoError(fileName_, wxGetTranslation("cannot be written, since points are missing"));
    ReportNode(node);
}

void PointTreeFileWriter::WriteOwnPoints(VpcConstructNode& node, PointBlock& block) {
    node.VisitRecords([&](char* records, unsigned long long count) {
        if (tree_.is16bitColor) keepHighBytes(records, count);
        block.Write(records, count);
    });
    block.Finish();
    RequireGoodStream();
    ReportNode(node);
    node.RemoveDiskFile();
}

void PointTreeFileWriter::ReportNode(const VpcConstructNode& node) {
    pointsDone_ += node.PointsOnDisk();
    // Early, so that little is left to wait for.
    if (pointsDone_ >= nextWriteBack_ && direct_ == nullptr) {
        stream_.StreamStartWriteBack();
        nextWriteBack_ = pointsDone_ + pointsPerWriteBack;
    }
    if (progress_) progress_(pointsDone_, tree_.PointsAdded());
}

}  // namespace vpc
