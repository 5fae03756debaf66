#include "tree/construct/VpcConstructNode.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include <wx/translation.h>

#include "core/geometry/VpcSimplePointTools.h"
#include "core/util/FileTools.h"
#include "core/util/IoError.h"
#include "tree/construct/VpcConstructTree.h"
#include "tree/construct/VpcPointGrid3D.h"
#include "tree/construct/VpcRandomSampler.h"

namespace {

constexpr unsigned long long noCell = std::numeric_limits<unsigned long long>::max();
/// The most cells that the root's grid has along an axis.
constexpr unsigned long long mostRootCells = 20;

struct Coordinates {
    double x, y, z;
};

Coordinates coordinatesOf(const char* record) {
    static_assert(VpcPoint3D::recordOffsetX == 0 && VpcPoint3D::recordOffsetY == 8 &&
                  VpcPoint3D::recordOffsetZ == 16);
    Coordinates c;
    std::memcpy(&c, record, sizeof c);
    return c;
}

/// Sets `whole` to the number of the cell; false where it is none of the `count` cells.
bool truncateToCell(double cell, unsigned long long count, unsigned long long& whole) {
    // Truncation is toward zero, so the first cell begins just above -1.
    if (!(cell > -1.0 && cell < static_cast<double>(count))) return false;
    whole = static_cast<unsigned long long>(std::max(cell, 0.0));
    return true;
}

std::array<unsigned long long, 3> countsOf(const VpcConstructNode::Triplet& grid) {
    return {grid.first, grid.second, grid.third};
}

/// Where the cell begins, among `count` cells of width `cellSize` between `minimum` and `maximum`.
/// The last cell ends where the node ends, so that rounding leaves no gap.
double cellBoundary(double minimum, double maximum, double cellSize, unsigned long long count,
                    unsigned long long cell) {
    return cell == count ? maximum : minimum + static_cast<double>(cell) * cellSize;
}

/// Visits the cells of a grid, x fastest, then y, then z.
template <class Visit>
void forEachCell(const VpcConstructNode::Triplet& grid, const Visit& visit) {
    for (unsigned long long iz = 0; iz < grid.third; ++iz)
        for (unsigned long long iy = 0; iy < grid.second; ++iy)
            for (unsigned long long ix = 0; ix < grid.first; ++ix) visit(ix, iy, iz);
}

}  // namespace

VpcConstructNode::VpcConstructNode(VpcConstructTree* tree, const wxString& fileName,
                                   const VpcBoundingBoxAxisAligned& box, VpcConstructNode* parent,
                                   const Triplet& step, const Triplet& parentGrid)
    : tree_(tree),
      parent_(parent),
      points_(tree->store_, FileTools::ToNativePath(fileName)),
      minimum_{box.minPoint.x, box.minPoint.y, box.minPoint.z},
      maximum_{box.maxPoint.x, box.maxPoint.y, box.maxPoint.z},
      step_(step),
      parentGrid_(parentGrid),
      level_(parent != nullptr ? parent->level_ + 1 : 0) {
    tree_->RegisterNode(*this);
}

// --- Adding points -------------------------------------------------------------------------------

void VpcConstructNode::AddPoint(const VpcPoint3D& point) {
    VpcConstructNode* leaf = tree_->BeginChange() ? FindLeaf(point.x, point.y, point.z) : nullptr;
    if (leaf != nullptr)
        leaf->StoreInLeaf(point);
    else
        ++tree_->untakenPoints_;
}

VpcConstructNode* VpcConstructNode::FindLeaf(double x, double y, double z) {
    VpcConstructNode* node = this;
    while (node != nullptr && !node->children_.empty()) node = node->ChildContaining(x, y, z);
    return node;
}

VpcConstructNode* VpcConstructNode::ChildContaining(double x, double y, double z) const {
    const unsigned long long cell = CellOf(x, y, z);
    if (cell < children_.size() && children_[cell]->Contains(x, y, z)) return children_[cell].get();
    // Rounding may put a point just beside its cell: the boxes decide. No two of them overlap.
    for (const auto& child : children_)
        if (child->Contains(x, y, z)) return child.get();
    return nullptr;
}

unsigned long long VpcConstructNode::CellOf(double x, double y, double z) const {
    unsigned long long ix = 0;
    unsigned long long iy = 0;
    unsigned long long iz = 0;
    if (!truncateToCell((x - minimum_[0]) / cellSize_[0], childrenPerAxis_.first, ix) ||
        !truncateToCell((y - minimum_[1]) / cellSize_[1], childrenPerAxis_.second, iy) ||
        !truncateToCell((z - minimum_[2]) / cellSize_[2], childrenPerAxis_.third, iz))
        return noCell;
    return ComputeNodeIndex(ix, iy, iz);
}

unsigned long long VpcConstructNode::ComputeNodeIndex(const VpcPoint3D& point) const {
    return CellOf(point.x, point.y, point.z);
}

unsigned long long VpcConstructNode::ComputeNodeIndex(unsigned long long ix, unsigned long long iy,
                                                      unsigned long long iz) const {
    return (iz * childrenPerAxis_.second + iy) * childrenPerAxis_.first + ix;
}

void VpcConstructNode::LeafHasGrown() {
    if (!tree_->store_.WritesBehind()) {
        if (BufferedPoints() >= tree_->maxPointsPerNode_ / 2) WriteBufferPointsToDisk();
        if (!awaitsFlush_) tree_->AwaitFlush(*this);
    }
    if (points_.Count() < tree_->maxPointsPerNode_ || cannotSplit_) return;
    cannotSplit_ = level_ >= tree_->maxLevel_ || !CanSplit();
    if (cannotSplit_) return;
    if (!tree_->store_.WritesBehind()) WriteBufferPointsToDisk();
    SplitNode();
}

bool VpcConstructNode::WriteBufferPointsToDisk() {
    return tree_->Succeeds([this] {
        WriteBuffer();
        return true;
    });
}

void VpcConstructNode::WriteBuffer() {
    const unsigned long long buffered = BufferedPoints();
    // With a budget the points stay in memory until the store wants room; they count as on disk
    // nevertheless.
    if (!tree_->store_.WritesBehind()) points_.WriteOut();
    pointsOnDisk_ += buffered;
}

void VpcConstructNode::FlushBuffersToDisk(unsigned long long threshold) {
    if (BufferedPoints() > threshold) WriteBufferPointsToDisk();
    for (const auto& child : children_) child->FlushBuffersToDisk(threshold);
}

// --- Splitting -----------------------------------------------------------------------------------

VpcConstructNode::Triplet VpcConstructNode::SplitGridOct() const {
    if (level_ != 0) return {2, 2, 2};
    const auto capped = [](unsigned long long ratio) {
        return std::clamp(ratio, 1ULL, mostRootCells);
    };
    const Triplet& ratios = tree_->dimensionRatios_;
    return {capped(ratios.first), capped(ratios.second), capped(ratios.third)};
}

VpcConstructNode::Triplet VpcConstructNode::SplitGridKd() const {
    if (Extent(0) >= Extent(1) && Extent(0) >= Extent(2)) return {2, 1, 1};
    if (Extent(1) >= Extent(0) && Extent(1) >= Extent(2)) return {1, 2, 1};
    return {1, 1, 2};
}

VpcConstructNode::Triplet VpcConstructNode::SplitGrid() const {
    return tree_->treeType_ == Tree_Octree ? SplitGridOct() : SplitGridKd();
}

void VpcConstructNode::SetChildGrid(const Triplet& grid) {
    childrenPerAxis_ = grid;
    cellSize_ = {Extent(0) / static_cast<double>(grid.first),
                 Extent(1) / static_cast<double>(grid.second),
                 Extent(2) / static_cast<double>(grid.third)};
}

void VpcConstructNode::ComputeNumberOfChildrenOct() {
    // Children that exist already lie in the grid that they were made for.
    if (children_.empty()) SetChildGrid(SplitGridOct());
}

bool VpcConstructNode::CanSplit() const {
    const auto counts = countsOf(SplitGrid());
    for (unsigned axis = 0; axis < 3; ++axis) {
        const double cellSize = Extent(axis) / static_cast<double>(counts[axis]);
        double begin = minimum_[axis];
        for (unsigned long long cell = 1; cell <= counts[axis]; ++cell) {
            const double end =
                cellBoundary(minimum_[axis], maximum_[axis], cellSize, counts[axis], cell);
            if (!(begin < end)) return false;
            begin = end;
        }
    }
    return true;
}

void VpcConstructNode::CreateChildren() {
    children_.reserve(childrenPerAxis_.first * childrenPerAxis_.second * childrenPerAxis_.third);
    forEachCell(childrenPerAxis_,
                [this](unsigned long long ix, unsigned long long iy, unsigned long long iz) {
                    AddChild({ix, iy, iz}, ComputeNodeIndex(ix, iy, iz));
                });
}

void VpcConstructNode::AddChild(const Triplet& cell, unsigned long long index) {
    // This node is no leaf any more, so the next point must not go into it.
    tree_->lastLeaf_ = nullptr;
    const auto counts = countsOf(childrenPerAxis_);
    const auto cells = countsOf(cell);
    Triple low;
    Triple high;
    for (unsigned axis = 0; axis < 3; ++axis) {
        const auto boundary = [&](unsigned long long at) {
            return cellBoundary(minimum_[axis], maximum_[axis], cellSize_[axis], counts[axis], at);
        };
        low[axis] = boundary(cells[axis]);
        high[axis] = boundary(cells[axis] + 1);
    }
    const VpcBoundingBoxAxisAligned box(low[0], low[1], low[2], high[0], high[1], high[2]);
    const wxString fileName = FileName() + "-" + wxString(std::to_string(index));
    children_.push_back(
        std::make_unique<VpcConstructNode>(tree_, fileName, box, this, cell, childrenPerAxis_));
}

void VpcConstructNode::SplitNode() {
    SplitInto(SplitGrid(), {}, 0);
}

void VpcConstructNode::SplitNodeOct(std::vector<VpcPoint3D>& points) {
    SplitInto(SplitGridOct(), points, pointsOnDisk_);
}

void VpcConstructNode::SplitNodeKd(std::vector<VpcPoint3D>& points) {
    SplitInto(SplitGridKd(), points, pointsOnDisk_);
}

void VpcConstructNode::SplitInto(const Triplet& grid, const std::vector<VpcPoint3D>& points,
                                 unsigned long long skipped) {
    if (!children_.empty() || !tree_->BeginChange()) return;
    // Hides the points from the store, which must not write them out when the children ask it for
    // room.
    vpc::NodePoints own(tree_->store_, points_.Path());
    own.TakeOver(points_);
    pointsOnDisk_ = 0;
    SetChildGrid(grid);
    CreateChildren();
    for (const VpcPoint3D& point : points) AddPoint(point);
    if (points.size() < skipped) tree_->untakenPoints_ += skipped - points.size();
    own.Visit([&](const char* records, unsigned long long count) {
        const unsigned long long left = std::min(count, skipped);
        skipped -= left;
        DistributeRecords(records + left * vpc::recordSize, count - left);
    });
}

void VpcConstructNode::DistributeRecords(const char* records, unsigned long long count) {
    for (unsigned long long i = 0; i < count; ++i) {
        const char* record = records + i * vpc::recordSize;
        const auto [x, y, z] = coordinatesOf(record);
        VpcConstructNode* leaf = FindLeaf(x, y, z);
        if (leaf == nullptr) {
            ++tree_->untakenPoints_;
            continue;
        }
        std::memcpy(leaf->points_.Append(), record, vpc::recordSize);
        leaf->LeafHasGrown();
    }
}

// --- Finishing -----------------------------------------------------------------------------------

void VpcConstructNode::AddEndNodes() {
    for (const auto& child : children_) child->AddEndNodes();
    if (!children_.empty()) return;
    ++tree_->leafCount_;
    if (points_.Count() == 0) {
        ++tree_->emptyLeafCount_;
        return;
    }
    ++tree_->filledLeafCount_;
    tree_->endNodes_.push_back(this);
}

VpcConstructNode* VpcConstructNode::DropNodeLevel() {
    if (!children_.empty() || !tree_->BeginChange()) return this;
    SetChildGrid({1, 1, 1});
    AddChild({0, 0, 0}, 0);
    VpcConstructNode* child = children_.back().get();
    child->points_.TakeOver(points_);
    child->pointsOnDisk_ = std::exchange(pointsOnDisk_, 0);
    child->SetChildGrid({1, 1, 1});
    if (child->BufferedPoints() != 0) tree_->AwaitFlush(*child);
    return child;
}

bool VpcConstructNode::DropFileName(const wxString& oldName) {
    return tree_->Succeeds([&] {
        points_.RenameFileFrom(FileTools::ToNativePath(oldName));
        return true;
    });
}

void VpcConstructNode::ResetNodeAsParentLOD() {
    if (BufferedPoints() != 0) points_.ClearMemory();
    if (parent_ == nullptr) return;
    // The test is on the parent's file and the deletion on the node's own: splits leave parents
    // without a file, so the leaves' files survive this.
    if (parent_->points_.HasFile()) RemoveDiskFile();
    parent_->pointsOnDisk_ = 0;
}

void VpcConstructNode::UpdateMinDistances() {
    minDistance_ = ComputePointMinDistanceForLevel();
    if (parent_ == nullptr) return;
    // The octree's factor is 3, although its cells double from level to level.
    const double factor = tree_->treeType_ == Tree_Octree ? 3.0 : std::cbrt(3.0);
    parent_->minDistance_ = minDistance_ * factor;
}

double VpcConstructNode::ComputePointMinDistanceForLevel() const {
    const auto levelsAboveDeepest =
        static_cast<int>(tree_->levels_.size()) - static_cast<int>(level_) - 1;
    const double growth = tree_->treeType_ == Tree_Octree ? 2.0 : std::cbrt(2.0);
    const double spacing = tree_->minimumPointDistance_ * std::pow(growth, levelsAboveDeepest);
    const double shortest = std::min({Extent(0), Extent(1), Extent(2)});
    const double wanted = std::min(shortest, spacing);
    constexpr double mostCells = 400.0;
    double largestCell = 0.0;
    for (unsigned axis = 0; axis < 3; ++axis) {
        const double cells = std::min(std::max(Extent(axis) / wanted, 1.0), mostCells);
        largestCell = std::max(largestCell, Extent(axis) / cells);
    }
    return std::min(shortest, largestCell);
}

void VpcConstructNode::PopulateParentLOD() {
    UpdateMinDistances();
    if (parent_ == nullptr) return;
    std::vector<VpcPoint3D> points = GetPointsFromDisk();
    std::vector<VpcPoint3D> samples;
    if (points.size() < vpc::SamplePattern::smallestSampled)
        samples.swap(points);
    else if (tree_->subsampleType_ == Subsample_Grid)
        SubsampleGrid(points, samples);
    else
        SubsampleRandom(points, samples);
    for (unsigned long long i = 0; i < samples.size(); ++i)
        parent_->AddPointFromChild(samples[i], i);
    parent_->WriteBuffer();
}

void VpcConstructNode::PlanParentLOD(vpc::SamplePattern& pattern) {
    UpdateMinDistances();
    if (parent_ != nullptr) parent_->pointsOnDisk_ += pattern.KeptOf(pointsOnDisk_);
}

void VpcConstructNode::SubsampleRandom(std::vector<VpcPoint3D>& in, std::vector<VpcPoint3D>& out) {
    // Every node has its own sampler with the same seed, so that runs repeat.
    VpcRandomSampler sampler(tree_->KeepFraction(), tree_->seedFromDevice_, 0);
    for (const VpcPoint3D& point : in)
        if (sampler.KeepNext()) out.push_back(point);
    if (out.empty() && !in.empty()) out.push_back(in.front());
}

void VpcConstructNode::SubsampleGrid(std::vector<VpcPoint3D>& in, std::vector<VpcPoint3D>& out) {
    VpcPoint3D lowest;
    VpcPoint3D highest;
    VpcSimplePointTools::DeterminePointsMinMaxPoints(in, lowest, highest);
    VpcBoundingBoxAxisAligned box(lowest, highest);
    double side = box.sortedSides.back().second;
    for (const auto& [axis, length] : box.sortedSides) {
        if (length <= 0.0) continue;
        side = length;
        break;
    }
    box.AddMargin(side / 5000);
    const double spacing = parent_ != nullptr ? parent_->minDistance_ : minDistance_;
    VpcPointGrid3D grid(spacing, box, spacing);
    grid.FilterPoints(in);
    out = grid.GetFilteredPoints(in);
}

void VpcConstructNode::AddPointFromChild(const VpcPoint3D& point, unsigned long long) {
    point.ToRecord(points_.Append());
}

std::vector<VpcPoint3D> VpcConstructNode::GetPointsFromDisk() {
    if (tree_->SamplesWhileWriting() && !children_.empty()) return SamplesFromBelow();
    std::vector<VpcPoint3D> points;
    points.reserve(pointsOnDisk_);
    VisitRecords([&points](const char* records, unsigned long long count) {
        for (unsigned long long i = 0; i < count; ++i)
            points.emplace_back().FromRecord(records + i * vpc::recordSize);
    });
    return points;
}

std::vector<VpcPoint3D> VpcConstructNode::SamplesFromBelow() const {
    std::vector<VpcPoint3D> samples;
    for (const auto& child : children_) {
        const std::vector<VpcPoint3D> points = child->GetPointsFromDisk();
        tree_->SamplePatternOfTree().ForEachKept(
            points.size(), 0, points.size(),
            [&](unsigned long long i) { samples.push_back(points[i]); });
    }
    return samples;
}

void VpcConstructNode::VisitRecords(
    const std::function<void(char* records, unsigned long long count)>& visit) {
    unsigned long long left = pointsOnDisk_;
    points_.Visit([&](char* records, unsigned long long count) {
        const unsigned long long onDisk = std::min(count, left);
        if (onDisk != 0) visit(records, onDisk);
        left -= onDisk;
    });
    if (left != 0) throw vpc::IoError(FileName(), wxGetTranslation("no longer holds its points"));
}

void VpcConstructNode::RemoveDiskFile() {
    points_.Clear();
}

// --- What it holds -------------------------------------------------------------------------------

wxString VpcConstructNode::FileName() const {
    return FileTools::FromNativePath(points_.Path());
}

VpcBoundingBoxAxisAligned VpcConstructNode::Box() const {
    return {minimum_[0], minimum_[1], minimum_[2], maximum_[0], maximum_[1], maximum_[2]};
}

std::vector<VpcConstructNode::Triplet> VpcConstructNode::NodeId() const {
    std::vector<Triplet> path = parent_ != nullptr ? parent_->NodeId() : std::vector<Triplet>{};
    path.push_back(step_);
    return path;
}

std::vector<VpcConstructNode::Triplet> VpcConstructNode::GridPath() const {
    std::vector<Triplet> path = parent_ != nullptr ? parent_->GridPath() : std::vector<Triplet>{};
    path.push_back(parentGrid_);
    return path;
}
