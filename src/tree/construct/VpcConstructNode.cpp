#include "tree/construct/VpcConstructNode.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

#include <wx/translation.h>

#include "core/util/FileTools.h"
#include "core/util/IoError.h"
#include "core/util/ScopedValue.h"
#include "tree/construct/Thinning.h"
#include "tree/construct/VpcConstructTree.h"

namespace {

/// The most cells that the root's grid has along an axis.
constexpr unsigned long long mostRootCells = 20;
constexpr unsigned long long noGrowth = std::numeric_limits<unsigned long long>::max();
/// Points that are looked for in the tree together.
constexpr unsigned pointsAtOnce = 32;
/// Fewer points in a row that have the same leaf are not worth being treated as one.
constexpr unsigned shortRun = 4;

}  // namespace

VpcConstructNode::VpcConstructNode(VpcConstructTree* tree, const wxString& fileName,
                                   const VpcBoundingBoxAxisAligned& box, VpcConstructNode* parent,
                                   const Triplet& step, const Triplet& parentGrid)
    : cells_(box),
      points_(tree->store_, ZonesOf(parent, step).first),
      level_(parent != nullptr ? parent->level_ + 1 : 0),
      tree_(tree),
      parent_(parent),
      step_(step),
      parentGrid_(parentGrid),
      zones_(ZonesOf(parent, step)),
      path_(FileTools::ToNativePath(fileName)) {
    tree_->RegisterNode(*this);
}

/// The node's part of its parent's zones. Nodes are written, and their points freed, in the order
/// of their cells.
VpcConstructNode::Zones VpcConstructNode::ZonesOf(const VpcConstructNode* parent,
                                                  const Triplet& step) {
    if (parent == nullptr) return {0, vpc::SpillFile::zones};
    const auto zones = static_cast<unsigned long long>(parent->zones_.count);
    const auto cells = parent->cells_.Counts().first * parent->cells_.Counts().second *
                       parent->cells_.Counts().third;
    const auto cell = parent->cells_.IndexOf(step);
    const auto before = zones * cell / cells;
    const auto count = std::max(zones * (cell + 1) / cells - before, 1ULL);
    return {parent->zones_.first + static_cast<unsigned>(before), static_cast<unsigned>(count)};
}

// --- Adding points -------------------------------------------------------------------------------

void VpcConstructNode::AddPoint(const VpcPoint3D& point) {
    if (!tree_->BeginChange()) {
        ++tree_->untakenPoints_;
        return;
    }
    Place(tree_->store_.Packer().Pack(&point, 1));
}

VpcConstructNode* VpcConstructNode::FindLeaf(double x, double y, double z) {
    if (children_.empty()) return this;
    if (!Contains(x, y, z)) return nullptr;
    VpcConstructNode* node = this;
    do node = node->children_[node->cells_.CellHolding(x, y, z)].get();
    while (!node->children_.empty());
    return node;
}

unsigned long long VpcConstructNode::ComputeNodeIndex(const VpcPoint3D& point) const {
    return cells_.NearCell(point.x, point.y, point.z);
}

unsigned long long VpcConstructNode::ComputeNodeIndex(unsigned long long ix, unsigned long long iy,
                                                      unsigned long long iz) const {
    return cells_.IndexOf({ix, iy, iz});
}

unsigned VpcConstructNode::FindLeaves(const Coordinates* points, unsigned count,
                                      VpcConstructNode** leaves) {
    if (tree_->store_.IsScattered()) {
        FindLeavesAtOnce(points, count, leaves);
        tree_->store_.NoteOrder(count < shortRun || leaves[0] != leaves[shortRun - 1]);
        return 0;
    }
    for (unsigned done = 0; done < count;) {
        const unsigned first = done;
        VpcConstructNode* leaf = FindLeaf(points[first][0], points[first][1], points[first][2]);
        do leaves[done++] = leaf;
        while (done < count && leaf != nullptr &&
               leaf->Contains(points[done][0], points[done][1], points[done][2]));
        const bool isScattered = done - first < shortRun && done < count;
        tree_->store_.NoteOrder(isScattered);
        if (!isScattered) continue;
        FindLeavesAtOnce(points + done, count - done, leaves + done);
        return done;
    }
    return count;
}

void VpcConstructNode::FindLeavesAtOnce(const Coordinates* points, unsigned count,
                                        VpcConstructNode** leaves) {
    if (parent_ == nullptr && !children_.empty()) return FindLeavesByHints(points, count, leaves);
    const bool goesOn = !children_.empty();
    for (unsigned i = 0; i < count; ++i) {
        const auto& [x, y, z] = points[i];
        leaves[i] = !goesOn || Contains(x, y, z) ? this : nullptr;
    }
    DescendAll(points, count, leaves);
}

void VpcConstructNode::FindLeavesByHints(const Coordinates* points, unsigned count,
                                         VpcConstructNode** leaves) {
    vpc::LeafHints& hints = tree_->leafHints_;
    if (hints.IsEmpty()) hints.Make(cells_, *this);
    std::array<std::size_t, pointsAtOnce> cells;
    std::array<VpcConstructNode*, pointsAtOnce> hinted;
    for (unsigned i = 0; i < count; ++i) {
        cells[i] = hints.CellOf(points[i]);
        hints.Prefetch(cells[i]);
    }
    for (unsigned i = 0; i < count; ++i) {
        const auto& [x, y, z] = points[i];
        if (cells[i] != vpc::LeafHints::noCell)
            hinted[i] = hints.At(cells[i]);
        else
            hinted[i] = Contains(x, y, z) ? this : nullptr;
        leaves[i] = hinted[i];
        if (leaves[i] == nullptr) continue;
        __builtin_prefetch(leaves[i]);
        // Mostly that is the leaf.
        __builtin_prefetch(&leaves[i]->points_, 1);
    }
    DescendAll(points, count, leaves);
    for (unsigned i = 0; i < count; ++i)
        if (leaves[i] != hinted[i] && cells[i] != vpc::LeafHints::noCell)
            hints.Improve(cells[i], *leaves[i]);
}

void VpcConstructNode::DescendAll(const Coordinates* points, unsigned count,
                                  VpcConstructNode** leaves) {
    // Neighbours in the scan are far apart in the tree: the processor would wait for every node on
    // every way. So all points take one step before any takes the next.
    for (bool goesOn = true; goesOn;) {
        goesOn = false;
        for (unsigned i = 0; i < count; ++i) {
            const VpcConstructNode* node = leaves[i];
            if (node == nullptr || node->children_.empty()) continue;
            const auto& [x, y, z] = points[i];
            leaves[i] = node->children_[node->cells_.CellHolding(x, y, z)].get();
            __builtin_prefetch(leaves[i]);
            goesOn = true;
        }
    }
}

void VpcConstructNode::Place(const vpc::PackedRun& run) {
    std::array<Coordinates, pointsAtOnce> points;
    std::array<VpcConstructNode*, pointsAtOnce> leaves;
    for (unsigned done = 0; done < run.count; done += pointsAtOnce) {
        const unsigned count = std::min(run.count - done, pointsAtOnce);
        run.format->CoordinatesOf(run.Record(done), run.stride, count, points.data());
        const unsigned inRuns = FindLeaves(points.data(), count, leaves.data());
        for (unsigned i = inRuns; i < count; ++i)
            if (leaves[i] != nullptr) leaves[i]->points_.PrefetchForAppend();
        for (unsigned i = inRuns; i < count; ++i)
            if (leaves[i] != nullptr) leaves[i]->points_.PrefetchPlace();
        unsigned i = 0;
        while (i < inRuns) {
            unsigned end = i + 1;
            while (end < inRuns && leaves[end] == leaves[i]) ++end;
            i += StoreSome(leaves[i], run, done + i, end - i);
            if (i == end) continue;
            StoreEach(leaves.data() + i, points.data() + i, 1, run, done + i);
            ++i;
        }
        StoreEach(leaves.data() + i, points.data() + i, count - i, run, done + i);
    }
}

unsigned VpcConstructNode::StoreSome(VpcConstructNode* leaf, const vpc::PackedRun& run,
                                     unsigned first, unsigned count) const {
    if (count < shortRun || leaf == nullptr || !leaf->children_.empty() ||
        run.stride != run.format->RecordSize())
        return 0;
    // The point that fills the leaf is left to StoreEach.
    const unsigned long long held = leaf->points_.Count();
    if (held + count >= tree_->growthToWatch_) return 0;
    const unsigned stored =
        leaf->points_.AppendSome(run.Record(first), count, run.formatNumber, run.stride);
    tree_->arrivals_ += std::uint64_t{stored} * run.arrivalStep;
    return stored;
}

void VpcConstructNode::StoreEach(VpcConstructNode* const* leaves, const Coordinates* points,
                                 unsigned count, const vpc::PackedRun& run, unsigned first) const {
    VpcConstructTree& tree = *tree_;
    // The compiler has to assume that what is written to a leaf changes `run` as well.
    const vpc::PackedRun from = run;
    const unsigned size = from.format->RecordSize();
    const unsigned long long growthToWatch = tree.growthToWatch_;
    unsigned long long arrival = tree.arrivals_;
    for (unsigned i = 0; i < count; ++i) {
        const char* const record = from.Record(first + i);
        arrival =
            from.arrivals != nullptr ? from.Arrival(record, size) : arrival + from.arrivalStep;
        tree.arrivals_ = arrival;
        VpcConstructNode* leaf = leaves[i];
        // The leaf may have split since it was found.
        if (leaf != nullptr && !leaf->children_.empty())
            leaf = leaf->FindLeaf(points[i][0], points[i][1], points[i][2]);
        if (leaf == nullptr) {
            ++tree.untakenPoints_;
            continue;
        }
        leaf->points_.Append(record, from.formatNumber, size, arrival);
        if (leaf->points_.Count() >= growthToWatch && !leaf->IsFrozen()) leaf->LeafHasGrown();
    }
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
    if (tree_->store_.IsThinlySpread(points_))
        Freeze();
    else
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
    if (!tree_->store_.WritesBehind()) points_.WriteOut(path_);
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

void VpcConstructNode::ComputeNumberOfChildrenOct() {
    // Children that exist already lie in the grid that they were made for.
    if (children_.empty()) cells_.Cut(SplitGridOct());
}

void VpcConstructNode::CreateChildren() {
    const Triplet counts = cells_.Counts();
    children_.reserve(counts.first * counts.second * counts.third);
    for (unsigned long long iz = 0; iz < counts.third; ++iz)
        for (unsigned long long iy = 0; iy < counts.second; ++iy)
            for (unsigned long long ix = 0; ix < counts.first; ++ix) AddChild({ix, iy, iz});
}

void VpcConstructNode::AddChild(const Triplet& cell) {
    wxString fileName;
    if (!path_.empty())
        fileName = FileName() + "-" + wxString(std::to_string(cells_.IndexOf(cell)));
    children_.push_back(std::make_unique<VpcConstructNode>(tree_, fileName, cells_.BoxOf(cell),
                                                           this, cell, cells_.Counts()));
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
    if (!IsFrozen()) splitAt_ = tree_->arrivals_;
    const bool lackedPoints = std::exchange(tree_->lacksPoints_, true);  // until all have arrived
    // The children may ask for room, for which the points must not be written out meanwhile.
    vpc::NodePoints own(tree_->store_);
    own.TakeOver(points_);
    pointsOnDisk_ = 0;
    cells_.Cut(grid);
    CreateChildren();
    const vpc::ScopedValue arrivals(tree_->arrivals_, splitAt_);
    for (const VpcPoint3D& point : points) {
        vpc::PackedRun run = tree_->store_.Packer().Pack(&point, 1);
        run.arrivalStep = 0;
        Place(run);
    }
    if (points.size() < skipped) tree_->untakenPoints_ += skipped - points.size();
    own.VisitAndClear([&](const vpc::RecordBlock& block) {
        const auto left = static_cast<unsigned>(std::min<unsigned long long>(block.count, skipped));
        skipped -= left;
        Place(tree_->store_.Packer().RunOf(block, left));
    });
    tree_->lacksPoints_ = lackedPoints;
}

// --- Frozen leaves -------------------------------------------------------------------------------

void VpcConstructNode::Freeze() {
    points_.KeepArrivals();
    splitAt_ = tree_->arrivals_;
}

unsigned long long VpcConstructNode::FrozenPoints() const {
    unsigned long long points = IsFrozen() ? points_.Count() : 0;
    for (const auto& child : children_) points += child->FrozenPoints();
    return points;
}

void VpcConstructNode::ShapeFrozenLeaves(
    const std::function<void(unsigned long long points)>& shaped) {
    if (IsFrozen() && children_.empty()) {
        const unsigned long long points = points_.Count();
        // More points than memory takes are handed on for good. Some of the leaves that they reach
        // may be frozen in their turn.
        const bool isTooLarge = points_.Blocks() > tree_->store_.BlocksToLoad();
        if (isTooLarge)
            SplitNode();
        else
            ShapeFrozenLeaf();
        shaped(points);
        if (!isTooLarge) return;
    }
    for (const auto& child : children_) child->ShapeFrozenLeaves(shaped);
}

void VpcConstructNode::ShapeFrozenLeaf() {
    std::vector<Arrival> points;
    points.reserve(points_.Count());
    points_.Visit([&](const vpc::RecordBlock& block) {
        const vpc::PackedRun run = tree_->store_.Packer().RunOf(block);
        const unsigned size = run.format->RecordSize();
        for (unsigned i = 0; i < run.count; ++i) {
            const Coordinates at = run.format->CoordinatesOf(run.Record(i));
            if (Contains(at[0], at[1], at[2]))
                points.push_back(
                    {at, run.arrivals != nullptr ? run.Arrival(run.Record(i), size) : splitAt_});
            else
                ++tree_->untakenPoints_;
        }
    });
    std::vector<Arrival> others(points.size());
    pointsOnDisk_ = 0;
    ShapeChildren(points.data(), others.data(), points.size());
}

void VpcConstructNode::ShapeChildren(Arrival* points, Arrival* others, std::size_t count) {
    cells_.Cut(SplitGrid());
    CreateChildren();
    // How many points each child has, behind a zero.
    std::vector<std::size_t> ends(children_.size() + 1);
    const auto cellOf = [this](const Arrival& point) {
        return cells_.CellHolding(point.at[0], point.at[1], point.at[2]);
    };
    for (std::size_t i = 0; i < count; ++i) ++ends[cellOf(points[i]) + 1];
    for (std::size_t i = 0; i < children_.size(); ++i) children_[i]->pointsOnDisk_ = ends[i + 1];
    // Which points they are matters only where one of them is full.
    if (*std::max_element(ends.begin(), ends.end()) < tree_->FullCount()) return;
    // The points sorted by child, those of a child in the order of their arrival.
    std::partial_sum(ends.begin(), ends.end(), ends.begin());
    for (std::size_t i = 0; i < count; ++i) others[ends[cellOf(points[i])]++] = points[i];
    std::size_t begin = 0;
    for (std::size_t i = 0; i < children_.size(); ++i) {
        children_[i]->Shape(others + begin, points + begin);
        begin = ends[i];
    }
}

void VpcConstructNode::Shape(Arrival* points, Arrival* others) {
    const auto full = tree_->FullCount();
    if (pointsOnDisk_ < full) return;
    // It is never asked again, even where the tree becomes deeper.
    cannotSplit_ = level_ >= tree_->maxLevel_ || !CanSplit();
    if (cannotSplit_) return;
    // It would have split when it was full, and not before it was there.
    splitAt_ = std::max(parent_->splitAt_, points[full - 1].arrival);
    ShapeChildren(points, others, std::exchange(pointsOnDisk_, 0));
}

void VpcConstructNode::SettleAll() {
    SettlePoints();
    for (const auto& child : children_) child->SettleAll();
}

void VpcConstructNode::SettlePoints() {
    if (!HoldsPointsOfLeaves()) return;
    // Their leaves exist, and what none takes has been counted.
    const vpc::ScopedValue growth(tree_->growthToWatch_, noGrowth);
    const vpc::ScopedValue untaken(tree_->untakenPoints_, 0ULL);
    const vpc::ScopedValue arrivals(tree_->arrivals_, splitAt_);
    const bool lackedPoints = std::exchange(tree_->lacksPoints_, true);  // as in SplitInto
    vpc::NodePoints own(tree_->store_);
    own.TakeOver(points_);
    own.VisitAndClear(
        [this](const vpc::RecordBlock& block) { Place(tree_->store_.Packer().RunOf(block)); });
    tree_->lacksPoints_ = lackedPoints;
}

// --- Finishing -----------------------------------------------------------------------------------

void VpcConstructNode::AddEndNodes() {
    for (const auto& child : children_) child->AddEndNodes();
    if (!children_.empty()) return;
    ++tree_->leafCount_;
    if (PointsInAll() == 0) {
        ++tree_->emptyLeafCount_;
        return;
    }
    ++tree_->filledLeafCount_;
    tree_->endNodes_.push_back(this);
}

VpcConstructNode* VpcConstructNode::DropNodeLevel() {
    if (!children_.empty() || !tree_->BeginChange()) return this;
    cells_.Cut({1, 1, 1});
    splitAt_ = tree_->arrivals_;
    AddChild({0, 0, 0});
    VpcConstructNode* child = children_.back().get();
    child->points_.TakeOver(points_);
    child->pointsOnDisk_ = std::exchange(pointsOnDisk_, 0);
    child->cells_.Cut({1, 1, 1});
    if (child->BufferedPoints() != 0) tree_->AwaitFlush(*child);
    return child;
}

bool VpcConstructNode::DropFileName(const wxString& oldName) {
    return tree_->Succeeds([&] {
        points_.Rename(FileTools::ToNativePath(oldName), path_);
        return true;
    });
}

void VpcConstructNode::ResetNodeAsParentLOD() {
    if (BufferedPoints() != 0) points_.ClearMemory();
    if (parent_ == nullptr) return;
    // The test is on the parent's file and the deletion on the node's own: splits leave parents
    // without a file, so the leaves' files survive this.
    if (!parent_->points_.File().empty()) RemoveDiskFile();
    parent_->pointsOnDisk_ = 0;
}

void VpcConstructNode::UpdateMinDistances() {
    minDistance_ = ComputePointMinDistanceForLevel();
    if (parent_ == nullptr) return;
    parent_->minDistance_ = minDistance_ * vpc::parentSpacingFactor(tree_->treeType_);
}

double VpcConstructNode::ComputePointMinDistanceForLevel() const {
    const auto levelsAboveDeepest =
        static_cast<int>(tree_->levels_.size()) - static_cast<int>(level_) - 1;
    return vpc::levelSpacing(tree_->treeType_, tree_->minimumPointDistance_, levelsAboveDeepest,
                             {Extent(0), Extent(1), Extent(2)});
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
    out = vpc::thinnedRandomly(in, vpc::keepFraction(tree_->treeType_), tree_->seedFromDevice_);
}

void VpcConstructNode::SubsampleGrid(std::vector<VpcPoint3D>& in, std::vector<VpcPoint3D>& out) {
    out = vpc::thinnedByGrid(in, parent_ != nullptr ? parent_->minDistance_ : minDistance_);
}

void VpcConstructNode::AddPointFromChild(const VpcPoint3D& point, unsigned long long) {
    const vpc::PackedRun packed = tree_->store_.Packer().Pack(&point, 1);
    points_.Append(packed.records, packed.formatNumber, packed.format->RecordSize(), 0);
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
    for (VpcConstructNode* node = parent_; node != nullptr; node = node->parent_)
        node->SettlePoints();
    char* const records = tree_->RecordBuffer();
    unsigned long long left = pointsOnDisk_;
    unsigned long long gathered = 0;
    const auto passOn = [&] {
        if (gathered != 0) visit(records, std::exchange(gathered, 0));
    };
    points_.Visit([&](const vpc::RecordBlock& block) {
        const auto count = std::min<unsigned long long>(block.count, left);
        if (gathered + count > VpcConstructTree::recordsInBuffer) passOn();
        tree_->store_.Packer()
            .Format(block.format)
            .Unpack(block.records, block.stride, count, records + gathered * vpc::recordSize);
        gathered += count;
        left -= count;
    });
    passOn();
    if (left != 0) throw vpc::IoError(FileName(), wxGetTranslation("no longer holds its points"));
}

void VpcConstructNode::RemoveDiskFile() {
    points_.Clear();
}

// --- What it holds -------------------------------------------------------------------------------

wxString VpcConstructNode::FileName() const {
    return FileTools::FromNativePath(path_);
}

VpcBoundingBoxAxisAligned VpcConstructNode::Box() const {
    const Triple& low = Minimum();
    const Triple& high = Maximum();
    return {low[0], low[1], low[2], high[0], high[1], high[2]};
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
