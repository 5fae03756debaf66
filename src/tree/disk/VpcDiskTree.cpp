#include "tree/disk/VpcDiskTree.h"

#include <algorithm>

#include "core/geometry/DimensionRatios.h"
#include "core/util/FileBufferStream.h"
#include "core/util/VpcLogger.h"
#include "tree/disk/TreeSummaryWriter.h"
#include "tree/disk/VpcDiskNode.h"
#include "tree/file/NodeRecordReader.h"

namespace {

VpcDiskNode::Triplet tripletOf(const vpc::NodeRecord::Triplet& words) {
    return {words[0], words[1], words[2]};
}

vpc::BoxCorners boxOf(const vpc::NodeRecord& record) {
    const auto& [x0, y0, z0] = record.boxMinimum;
    const auto& [x1, y1, z1] = record.boxMaximum;
    return {x0, y0, z0, x1, y1, z1};
}

/// Whether a child in this cell is where its path leads when it is appended to the children.
bool isNextChild(const VpcDiskNode& parent, const VpcDiskNode::Triplet& cell) {
    const PointTreeLayout::ChildGrid& grid = parent.childGrid;
    return cell.first < grid.x && cell.second < grid.y && cell.third < grid.z &&
           parent.ComputeNodeIndex(cell.first, cell.second, cell.third) == parent.children.size();
}

unsigned long long pointsOf(const VpcDiskTree::NodeList& nodes) {
    unsigned long long points = 0;
    for (const VpcDiskNode* node : nodes) points += node->nrPoints;
    return points;
}

}  // namespace

VpcDiskTree::VpcDiskTree() = default;

VpcDiskTree::~VpcDiskTree() {
    Clear();
}

unsigned long long VpcDiskTree::ReadFileVersion(const wxString& fileName) {
    FileBufferStream stream;
    stream.StreamOpen(fileName, FileModeRead, false);
    return stream.StreamReadUint64();
}

bool VpcDiskTree::CreateFromFile(const wxString& fileName) {
    if (!levels_.empty()) return false;
    fileName_ = fileName;
    const wxString fault = Load();
    if (fault.empty()) return true;
    VpcLogger::Instance()->Add("The point tree file " + fileName + " " + fault);
    Clear();
    return false;
}

wxString VpcDiskTree::Load() {
    stream_ = std::make_unique<FileBufferStream>();
    if (!stream_->StreamOpen(fileName_, FileModeRead, false)) return "cannot be opened";
    wxString fault = LoadHeader();
    if (fault.empty()) fault = LoadNodes();
    return fault;
}

wxString VpcDiskTree::LoadHeader() {
    wxString fault = header_.Read(*stream_);
    if (!fault.empty()) return fault;
    vptVersion = header_.version;
    constexpr unsigned long long recordSize = VpcPoint3D::SerializeDiskSize();
    if (header_.pointRecordSize != recordSize)
        return wxString::Format("holds point records of %llu bytes in place of %llu",
                                header_.pointRecordSize, recordSize);
    if (header_.largestNodeCount > header_.fileSize / recordSize)
        return wxString::Format("claims a node of %llu points, more than it has room for",
                                header_.largestNodeCount);
    if (header_.levels > 0 && header_.nodeCounts.front() != 1)
        return wxString::Format("claims %llu root nodes", header_.nodeCounts.front());
    return {};
}

wxString VpcDiskTree::LoadNodes() {
    vpc::NodeRecordReader reader(fileName_, header_);
    vpc::NodeRecord record;
    unsigned long long mostPoints = 0;
    // Nodes whose points overlap would add up to more than any file of this size holds.
    unsigned long long room = header_.fileSize / VpcPoint3D::SerializeDiskSize();
    while (reader.Next(record)) {
        const wxString fault = LoadNode(record);
        if (!fault.empty()) return fault;
        if (record.points > room) return "claims more points than it has room for";
        room -= record.points;
        mostPoints = std::max(mostPoints, record.points);
    }
    if (reader.Failed())
        return wxString::Format("ends within the record of node %llu of level %llu", reader.Index(),
                                reader.Level());
    levels_.resize(header_.levels);
    // Once for all nodes; no more than they need, whatever the header claims.
    stream_->CreateInternalBuffer(VpcPoint3D::SerializeDiskSize() *
                                  std::min(mostPoints, header_.largestNodeCount));
    return {};
}

wxString VpcDiskTree::LoadNode(const vpc::NodeRecord& record) {
    const auto fault = [&record](const char* what) {
        return wxString::Format("%s node %llu of level %llu", what, record.index, record.level);
    };
    if (!HasRoomForPoints(record)) return fault("ends before the points of");
    if (record.level == 0) {
        const auto& [x0, y0, z0] = record.boxMinimum;
        const auto& [x1, y1, z1] = record.boxMaximum;
        InitiateRootNode(VpcPoint3D(x0, y0, z0), VpcPoint3D(x1, y1, z1), record.recordPosition,
                         record.pointBlock, record.pointList, record.points);
        Complete(*rootNode_, record);
        return {};
    }
    VpcDiskNode* const parent = FindParent(record);
    if (parent == nullptr) return fault("has no parent for");
    const VpcDiskNode::Triplet cell = tripletOf(record.indexPath.back());
    if (!isNextChild(*parent, cell)) return fault("has another place than its path tells for");
    Complete(AddChild(*parent, cell, record), record);
    return {};
}

bool VpcDiskTree::HasRoomForPoints(const vpc::NodeRecord& record) const {
    const unsigned long long size = header_.fileSize;
    return record.pointList <= size &&
           record.points <= (size - record.pointList) / VpcPoint3D::SerializeDiskSize();
}

VpcDiskNode* VpcDiskTree::FindParent(const vpc::NodeRecord& record) {
    parentPath_.clear();
    for (std::size_t level = 0; level < record.level; ++level)
        parentPath_.push_back(tripletOf(record.indexPath[level]));
    return rootNode_->GetNodeFromIndex(parentPath_);
}

VpcDiskNode& VpcDiskTree::AddChild(VpcDiskNode& parent, const VpcDiskNode::Triplet& cell,
                                   const vpc::NodeRecord& record) {
    if (record.index == 0) levels_.emplace_back().reserve(header_.nodeCounts[record.level]);
    if (parent.children.empty()) parent.children.reserve(parent.childGrid.cells());
    VpcDiskNode* const node =
        std::make_unique<VpcDiskNode>(this, &parent, cell, tripletOf(record.gridPath.back()),
                                      boxOf(record), record.recordPosition, record.pointBlock,
                                      record.pointList, record.points)
            .release();
    parent.children.push_back(node);
    return *node;
}

template <class T>
std::span<const T> VpcDiskTree::Keep(const std::vector<T>& values) {
    if (values.empty()) return {};
    T* const kept = std::pmr::polymorphic_allocator<T>(&numbers_).allocate(values.size());
    std::uninitialized_copy(values.begin(), values.end(), kept);
    return {kept, values.size()};
}

void VpcDiskTree::Complete(VpcDiskNode& node, const vpc::NodeRecord& record) {
    node.childGrid = record.grid;
    node.splitCoordinates = Keep(record.cellWidths);
    node.parentRecord = record.parentRecord;
    node.parentPointBlock = record.parentPointBlock;
    node.childEntries = Keep(record.children);
    node.minDistance = record.minimumDistance;
}

void VpcDiskTree::InitializeDimensionRatios(double dx, double dy, double dz) {
    dimensionRatios_ = vpc::dimensionRatios(dx, dy, dz);
}

void VpcDiskTree::InitiateRootNode(const VpcPoint3D& min, const VpcPoint3D& max,
                                   unsigned long long record, unsigned long long block,
                                   unsigned long long pointsOffset, unsigned long long nrPoints) {
    constexpr double marginRatio = 0.0001;
    const VpcVector3D extent(min, max);
    const VpcVector3D margin = extent * marginRatio;
    const VpcVector3D widened = extent + margin * 2;
    InitializeDimensionRatios(widened.x, widened.y, widened.z);
    rootNode_ = std::make_unique<VpcDiskNode>(this, nullptr, VpcDiskNode::Triplet{0, 0, 0},
                                              VpcDiskNode::Triplet{1, 1, 1},
                                              VpcBoundingBoxAxisAligned(min - margin, max + margin),
                                              record, block, pointsOffset, nrPoints)
                    .release();
}

std::vector<std::pair<unsigned long long, unsigned long long>> VpcDiskTree::GetNodePointSummary()
    const {
    std::vector<std::pair<unsigned long long, unsigned long long>> summary;
    for (const NodeList& nodes : levels_) summary.emplace_back(nodes.size(), pointsOf(nodes));
    return summary;
}

unsigned long long VpcDiskTree::totalNrPoints() const {
    return levels_.empty() ? 0 : pointsOf(levels_.back());
}

double VpcDiskTree::GetLevelMinDistance(unsigned long long level) const {
    const NodeList& nodes = levels_[level];
    return nodes.empty() ? 0.0 : nodes.front()->minDistance;
}

bool VpcDiskTree::WriteSummary(const wxString& fileName, bool detailed) const {
    return vpc::TreeSummaryWriter(*this, detailed).Write(fileName);
}

std::span<const char> VpcDiskTree::ReadPointRecords(unsigned long long position,
                                                    unsigned long long count) {
    constexpr unsigned long long recordSize = VpcPoint3D::SerializeDiskSize();
    if (stream_ == nullptr || position >= header_.fileSize) return {};
    const unsigned long long bytes =
        recordSize * std::min(count, (header_.fileSize - position) / recordSize);
    if (bytes > stream_->bufferSize) stream_->CreateInternalBuffer(bytes);
    stream_->StreamClearState();
    stream_->StreamSeek(position);
    stream_->ReadCharArray2File(stream_->bufferStart, bytes);
    if (stream_->IsStreamGood()) return {stream_->bufferStart, bytes};
    // The file has become shorter since it was loaded, or its disk fails.
    lacksPoints_ = true;
    const unsigned long long end = stream_->StreamPosition();
    const unsigned long long read = end > position ? std::min(end - position, bytes) : 0;
    return {stream_->bufferStart, read / recordSize * recordSize};
}

void VpcDiskTree::AddToLevel(VpcDiskNode& node) {
    if (levels_.size() <= node.Level()) levels_.resize(node.Level() + 1);
    levels_[node.Level()].push_back(&node);
}

void VpcDiskTree::Clear() {
    for (const NodeList& nodes : levels_)
        for (VpcDiskNode* node : nodes) std::unique_ptr<VpcDiskNode> freed(node);
    levels_.clear();
    rootNode_ = nullptr;
    numbers_.release();
    dimensionRatios_ = {1, 1, 1};
    header_ = {};
    vptVersion = 0;
    fileName_.clear();
    stream_.reset();
    lacksPoints_ = false;
}
