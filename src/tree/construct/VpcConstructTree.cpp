#include "tree/construct/VpcConstructTree.h"

#include <algorithm>
#include <cmath>
#include <string>

#include <wx/translation.h>

#include "core/geometry/DimensionRatios.h"
#include "core/util/FileTools.h"
#include "core/util/IoError.h"
#include "core/util/StringTools.h"
#include "io/PlyIO.h"
#include "io/TextFileWriter.h"
#include "tree/construct/PointTreeFileWriter.h"
#include "tree/construct/RootMargins.h"
#include "tree/construct/Thinning.h"

VpcConstructTree::VpcConstructTree(const wxString& workingFolder, VpcTreeType treeType,
                                   unsigned long long maxPointsPerNode, unsigned long long maxLevel,
                                   bool is16bit, unsigned long long pointMemory)
    : is16bitColor(is16bit),
      treeId_(StringTools::createGUID()),
      treeType_(treeType),
      maxPointsPerNode_(maxPointsPerNode),
      maxLevel_(maxLevel),
      growthToWatch_(pointMemory != 0 ? maxPointsPerNode : 0),
      workingFolder_(workingFolder),
      store_(pointMemory, FileTools::ToNativePath(workingFolder_ + treeId_ + "--points")) {
}

VpcConstructTree::~VpcConstructTree() = default;

void VpcConstructTree::setSubsampleType(VpcSubsampleType type, bool seedFromDevice) {
    subsampleType_ = type;
    seedFromDevice_ = seedFromDevice;
}

void VpcConstructTree::InitializeRootNode(VpcBoundingBoxAxisAligned box) {
    box.AddMargin(vpc::rootMargin);
    // A second root replaces the first, whose nodes are freed with it: no list may still hold them.
    levels_.clear();
    endNodes_.clear();
    awaitingFlush_.clear();
    leafHints_.Clear();
    stage_ = Stage::Adding;
    samplesWhileWriting_ = false;
    arrivals_ = 0;
    lacksPoints_ = false;
    const wxString fileName = store_.WritesBehind() ? wxString() : workingFolder_ + treeId_ + "--0";
    root_ = std::make_unique<VpcConstructNode>(this, fileName, box, nullptr,
                                               VpcConstructNode::Triplet{0, 0, 0},
                                               VpcConstructNode::Triplet{1, 1, 1});
    InitializeDimensionRatios(box.sideX, box.sideY, box.sideZ);
}

void VpcConstructTree::InitializeDimensionRatios(double dx, double dy, double dz) {
    dimensionRatios_ = vpc::dimensionRatios(dx, dy, dz);
}

void VpcConstructTree::AddPoints(const VpcPoint3D* points, unsigned long long count) {
    AddPacked(count, [&](unsigned long long first, unsigned long long some) {
        return store_.Packer().Pack(points + first, some);
    });
}

void VpcConstructTree::AddRecords(const vpc::ScanRecords& records) {
    AddPacked(records.count, [&](unsigned long long first, unsigned long long some) {
        return store_.Packer().Pack(records.Part(first, some));
    });
}

template <class Packing>
void VpcConstructTree::AddPacked(unsigned long long count, const Packing& pack) {
    pointsAdded_ += count;
    if (root_ == nullptr || !BeginChange()) {
        untakenPoints_ += count;
        return;
    }
    for (unsigned long long done = 0; done < count; done += vpc::PointPacker::most)
        root_->Place(pack(done, std::min(count - done, vpc::PointPacker::most)));
}

void VpcConstructTree::BeginScan(const std::optional<vpc::CoordinateGrid>& grid) {
    store_.Packer().BeginScan(grid);
}

bool VpcConstructTree::FlushBuffersToDisk(unsigned long long threshold) {
    if (store_.WritesBehind() || root_ == nullptr) return true;
    if (threshold < lastThreshold_) {
        root_->FlushBuffersToDisk(threshold);
    } else {
        // Only buffers that have grown since can have passed the threshold.
        for (VpcConstructNode* node : awaitingFlush_)
            if (node->BufferedPoints() > threshold) node->WriteBufferPointsToDisk();
    }
    for (VpcConstructNode* node : awaitingFlush_) node->awaitsFlush_ = false;
    awaitingFlush_.clear();
    lastThreshold_ = threshold;
    return true;
}

bool VpcConstructTree::BeginChange() {
    if (stage_ == Stage::EndNodesListed) {
        // New points come behind those that are there.
        if (root_ != nullptr) root_->SettleAll();
        stage_ = Stage::Adding;
    }
    return stage_ == Stage::Adding;
}

bool VpcConstructTree::Succeeds(const std::function<bool()>& work) {
    failureReason_.clear();
    try {
        return work();
    } catch (const vpc::IoError& error) {
        failureReason_ = error.Message();
        return false;
    }
}

bool VpcConstructTree::Refuse(const wxString& reason) {
    failureReason_ = reason;
    return false;
}

bool VpcConstructTree::FinishAddData() {
    return BuildEndNodeList() && PopulateParentNodes();
}

bool VpcConstructTree::BuildEndNodeList() {
    return Succeeds([this] { return ListEndNodes(); });
}

bool VpcConstructTree::ListEndNodes() {
    if (stage_ == Stage::Written) return Refuse(wxGetTranslation("The tree has been written"));
    if (stage_ != Stage::Adding) return true;
    if (lacksPoints_)
        return Refuse(wxGetTranslation("Points were lost when a temporary file failed"));
    leafCount_ = filledLeafCount_ = emptyLeafCount_ = 0;
    endNodes_.clear();
    if (root_ != nullptr) {
        ShapeFrozenLeaves();
        SortLevels();
        root_->AddEndNodes();
    }
    if (endNodes_.empty()) return false;
    for (VpcConstructNode* node : endNodes_) node->WriteBuffer();
    const VpcConstructNode* densest = DensestEndNode();
    const double side = std::min({densest->Extent(0), densest->Extent(1), densest->Extent(2)});
    constexpr double smallestDistance = 0.0025;
    const double spacing =
        std::cbrt(side * side * side / static_cast<double>(densest->PointsOnDisk()));
    minimumPointDistance_ = std::max(smallestDistance, spacing);
    PushDownEndNodes();
    maxLevel_ = levels_.size();
    stage_ = Stage::EndNodesListed;
    return true;
}

void VpcConstructTree::ShapeFrozenLeaves() {
    const unsigned long long points = root_->FrozenPoints();
    unsigned long long done = 0;
    root_->ShapeFrozenLeaves([&](unsigned long long shaped) {
        done = std::min(done + shaped, points);
        if (finishProgress_) finishProgress_(done, points);
    });
}

void VpcConstructTree::SortLevels() {
    // Nodes register as they are made, and those below a frozen leaf are made late. Children of one
    // parent come in the order of their cells in any case.
    for (Level& level : levels_)
        std::stable_sort(level.begin(), level.end(),
                         [](const VpcConstructNode* a, const VpcConstructNode* b) {
                             return a->Parent() != nullptr && b->Parent() != nullptr &&
                                    a->Parent()->SplitAt() < b->Parent()->SplitAt();
                         });
}

VpcConstructNode* VpcConstructTree::DensestEndNode() const {
    const auto density = [](const VpcConstructNode* node) {
        return static_cast<double>(node->PointsOnDisk()) /
               (node->Extent(0) * node->Extent(1) * node->Extent(2));
    };
    VpcConstructNode* densest = endNodes_.front();
    for (VpcConstructNode* node : endNodes_)
        if (density(node) > density(densest)) densest = node;
    return densest;
}

void VpcConstructTree::PushDownEndNodes() {
    const unsigned long long deepest = levels_.size() - 1;
    for (VpcConstructNode*& node : endNodes_) {
        while (node->Level() < deepest) node = node->DropNodeLevel();
        const std::string file = node->points_.File();
        if (!file.empty() && file != node->path_) node->points_.Rename(file, node->path_);
    }
}

bool VpcConstructTree::PopulateParentNodes() {
    return Succeeds([this] {
        // A second time would thin the samples in place of the points.
        if (stage_ == Stage::Finished) return true;
        if (ListEndNodes()) PopulateLevels();
        if (stage_ == Stage::Adding) pointsAdded_ = 0;
        return failureReason_.empty();
    });
}

void VpcConstructTree::PopulateLevels() {
    samplesWhileWriting_ =
        store_.WritesBehind() && subsampleType_ == Subsample_Random && !seedFromDevice_;
    if (!samplesWhileWriting_) root_->SettleAll();
    for (auto level = levels_.rbegin(); level != levels_.rend(); ++level)
        for (VpcConstructNode* node : *level) node->ResetNodeAsParentLOD();
    for (auto level = levels_.size() - 1; level >= 1; --level) PopulateLevelAbove(levels_[level]);
    pointsAdded_ = 0;
    for (const Level& level : levels_)
        for (const VpcConstructNode* node : level) pointsAdded_ += node->PointsOnDisk();
    stage_ = Stage::Finished;
}

void VpcConstructTree::PopulateLevelAbove(const Level& level) {
    for (VpcConstructNode* node : level) {
        if (SamplesWhileWriting())
            node->PlanParentLOD(SamplePatternOfTree());
        else
            node->PopulateParentLOD();
    }
}

unsigned long long VpcConstructTree::actualMaxPointsPerNode() const {
    unsigned long long largest = 0;
    if (!levels_.empty())
        for (const VpcConstructNode* node : levels_.back())
            largest = std::max(largest, node->PointsOnDisk());
    return largest;
}

unsigned long long VpcConstructTree::TemporaryBytes() const {
    return store_.WritesBehind() ? store_.Spill().BytesOnDisk() : pointsAdded_ * vpc::recordSize;
}

double VpcConstructTree::KeepFraction() const {
    return vpc::keepFraction(treeType_);
}

vpc::SamplePattern& VpcConstructTree::SamplePatternOfTree() {
    if (!samplePattern_) samplePattern_.emplace(KeepFraction());
    return *samplePattern_;
}

char* VpcConstructTree::RecordBuffer() {
    if (recordBuffer_ == nullptr)
        recordBuffer_ = std::make_unique_for_overwrite<char[]>(recordsInBuffer * vpc::recordSize);
    return recordBuffer_.get();
}

bool VpcConstructTree::CreateDiskTreeFile(const wxString& fileName, unsigned long long hostValue) {
    // Writing uses up the nodes' points, and before the tree is finished there are none in its
    // levels. Either way it would write an empty tree, perhaps over a good file.
    if (stage_ == Stage::Written) return Refuse(wxGetTranslation("The tree has been written"));
    if (stage_ != Stage::Finished) return Refuse(wxGetTranslation("The tree is not finished"));
    stage_ = Stage::Written;
    const bool written = Succeeds([&] {
        vpc::PointTreeFileWriter(*this, hostValue).Write(fileName, progress_);
        return true;
    });
    for (const Level& level : levels_)
        for (VpcConstructNode* node : level) node->RemoveDiskFile();
    FileTools::DeleteFilesInFolder(workingFolder_, CleanFolderDeleteByPrefix, {treeId_});
    return written;
}

bool VpcConstructTree::WriteNodePointsTreeAtLevel(unsigned long long level, const wxString& folder,
                                                  unsigned long long& nrPoints) {
    return Succeeds([&] {
        if (level >= levels_.size()) return true;
        for (std::size_t i = 0; i < levels_[level].size(); ++i) {
            const std::vector<VpcPoint3D> points = levels_[level][i]->GetPointsFromDisk();
            nrPoints += points.size();
            if (points.empty()) continue;
            std::string index = std::to_string(i);
            index.insert(0, 3 - std::min<std::size_t>(index.size(), 3), '0');
            const std::string name = "Level-" + std::to_string(level) + "-Node-" + index + ".ply";
            vpc::TextFileWriter file(folder + wxString(name));
            PlyIO::WriteTo(file, points, {});
            file.Close();
        }
        return true;
    });
}

void VpcConstructTree::RegisterNode(VpcConstructNode& node) {
    if (levels_.size() <= node.Level()) levels_.resize(node.Level() + 1);
    levels_[node.Level()].push_back(&node);
}

void VpcConstructTree::AwaitFlush(VpcConstructNode& node) {
    node.awaitsFlush_ = true;
    awaitingFlush_.push_back(&node);
}
