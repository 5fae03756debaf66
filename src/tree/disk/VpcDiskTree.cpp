#include "tree/disk/VpcDiskTree.h"

#include <algorithm>

#include <wx/translation.h>

#include "core/geometry/DimensionRatios.h"
#include "tree/disk/TreeSummaryWriter.h"
#include "tree/disk/VpcDiskNode.h"
#include "tree/file/LoadLog.h"
#include "tree/file/NodeRecordReader.h"
#include "tree/file/PointTreeReader.h"

namespace {

VpcDiskNode::Triplet tripletOf(const vpc::NodeRecord::Triplet& words) {
    return {words[0], words[1], words[2]};
}

vpc::BoxCorners boxOf(const vpc::NodeRecord& record) {
    const auto& [x0, y0, z0] = record.boxMinimum;
    const auto& [x1, y1, z1] = record.boxMaximum;
    return {x0, y0, z0, x1, y1, z1};
}

/// Whether a child appended to the children now gets the place that belongs to this cell.
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

VpcDiskTree::~VpcDiskTree() = default;

unsigned long long VpcDiskTree::ReadFileVersion(const wxString& fileName) {
    return vpc::PointTreeReader::VersionOf(fileName);
}

bool VpcDiskTree::CreateFromFile(const wxString& fileName) {
    return vpc::loadOrLog([&] { Load(std::make_unique<vpc::PointTreeReader>(fileName)); });
}

void VpcDiskTree::Load(std::unique_ptr<vpc::PointTreeReader> file) {
    if (!levels_.empty())
        throw vpc::IoError(file->FileName(),
                           _("is not loaded, since the tree holds a file already"));
    file_ = std::move(file);
    fileName_ = file_->FileName();
    try {
        LoadHeader();
        LoadNodes();
    } catch (...) {
        Clear();
        throw;
    }
}

void VpcDiskTree::LoadHeader() {
    header_ = file_->Header();
    vptVersion = header_.version;
    file_->RequirePointRecords();
    if (header_.largestNodeCount > file_->RoomForPoints())
        Refuse(wxString::Format(_("claims a node of %llu points, more than it has room for"),
                                header_.largestNodeCount));
    if (header_.levels > 0 && header_.nodeCounts.front() != 1)
        Refuse(wxString::Format(_("claims %llu root nodes"), header_.nodeCounts.front()));
}

void VpcDiskTree::LoadNodes() {
    vpc::NodeRecordReader reader(*file_);
    vpc::NodeRecord record;
    unsigned long long mostPoints = 0;
    unsigned long long room = file_->RoomForPoints();
    while (reader.Next(record)) {
        file_->RequirePoints(record, room);
        LoadNode(record);
        mostPoints = std::max(mostPoints, record.points);
    }
    levels_.resize(header_.levels);
    // Once for all nodes; no more than they need, whatever the header claims.
    ReserveRecords(VpcPoint3D::SerializeDiskSize() *
                   std::min(mostPoints, header_.largestNodeCount));
}

void VpcDiskTree::LoadNode(const vpc::NodeRecord& record) {
    if (record.level == 0) {
        const auto& [x0, y0, z0] = record.boxMinimum;
        const auto& [x1, y1, z1] = record.boxMaximum;
        InitiateRootNode(VpcPoint3D(x0, y0, z0), VpcPoint3D(x1, y1, z1), record.recordPosition,
                         record.pointBlock, record.pointList, record.points);
        Complete(*rootNode_, record);
        return;
    }
    VpcDiskNode* const parent = FindParent(record);
    if (parent == nullptr)
        Refuse(wxString::Format(_("has no parent for node %llu of level %llu"), record.index,
                                record.level));
    const VpcDiskNode::Triplet cell = tripletOf(record.indexPath.back());
    if (!isNextChild(*parent, cell))
        Refuse(
            wxString::Format(_("has another place than its path tells for node %llu of level %llu"),
                             record.index, record.level));
    Complete(AddChild(*parent, cell, record), record);
}

void VpcDiskTree::Refuse(const wxString& problem) const {
    throw vpc::IoError(fileName_, problem);
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
    VpcDiskNode& node = nodes_.emplace_front(this, &parent, cell, tripletOf(record.gridPath.back()),
                                             boxOf(record), record.recordPosition,
                                             record.pointBlock, record.pointList, record.points);
    parent.children.push_back(&node);
    return node;
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
    rootNode_ = &nodes_.emplace_front(this, nullptr, VpcDiskNode::Triplet{0, 0, 0},
                                      VpcDiskNode::Triplet{1, 1, 1},
                                      VpcBoundingBoxAxisAligned(min - margin, max + margin), record,
                                      block, pointsOffset, nrPoints);
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
    if (file_ == nullptr || position >= file_->Size()) return {};
    const unsigned long long bytes =
        recordSize * std::min(count, (file_->Size() - position) / recordSize);
    ReserveRecords(bytes);
    const unsigned long long whole =
        file_->Read(position, records_.get(), bytes) / recordSize * recordSize;
    // The file has become shorter since it was loaded, or its disk fails.
    missingPoints_ += (bytes - whole) / recordSize;
    return {records_.get(), whole};
}

wxString VpcDiskTree::WhyPointsAreMissing() const {
    if (!LacksPoints()) return {};
    const int reason = file_->SystemError();
    const wxString problem =
        reason == 0 ? _("has become shorter since it was loaded") : _("cannot be read");
    return vpc::IoError(fileName_, problem, reason).Message();
}

void VpcDiskTree::ReserveRecords(unsigned long long bytes) {
    if (bytes <= recordsCapacity_) return;
    // The old ones go first, so that two buffers are never held at once.
    records_.reset();
    recordsCapacity_ = 0;
    records_ = std::make_unique_for_overwrite<char[]>(bytes);
    recordsCapacity_ = bytes;
}

void VpcDiskTree::AddToLevel(VpcDiskNode& node) {
    if (levels_.size() <= node.Level()) levels_.resize(node.Level() + 1);
    levels_[node.Level()].push_back(&node);
}

void VpcDiskTree::Clear() {
    levels_.clear();
    rootNode_ = nullptr;
    nodes_.clear();
    numbers_.release();
    dimensionRatios_ = {1, 1, 1};
    header_ = {};
    vptVersion = 0;
    fileName_.clear();
    file_.reset();
    records_.reset();
    recordsCapacity_ = 0;
    missingPoints_ = 0;
}
