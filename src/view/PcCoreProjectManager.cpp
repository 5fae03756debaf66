#include "view/PcCoreProjectManager.h"

#include <algorithm>
#include <utility>

#include <wx/filename.h>

#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "core/geometry/VpcTransform3D.h"
#include "core/util/StringTools.h"
#include "tree/disk/VpcDiskNode.h"
#include "tree/disk/VpcDiskTree.h"
#include "tree/disk/VpcDiskTreeQuerier.h"
#include "tree/file/LoadLog.h"
#include "tree/file/PointTreeLayout.h"
#include "tree/file/PointTreeReader.h"
#include "view/NodeHeap.h"

namespace {

constexpr double sameSectionTolerance = 1e-6;

VpcPoint3D toVpcPoint(const OdGePoint3d& p) {
    return {p.x, p.y, p.z};
}

VpcVector3D toVpcVector(const OdGeVector3d& v) {
    return {v.x, v.y, v.z};
}

wxString folderOf(const wxString& fileName) {
    const wxString folder = wxFileName(fileName).GetPath();
    return (folder.empty() ? wxString(".") : folder) + "/";
}

}  // namespace

PcCoreProjectManager::PcCoreProjectManager() = default;
PcCoreProjectManager::~PcCoreProjectManager() = default;

// --- Loading -------------------------------------------------------------------------------------

bool PcCoreProjectManager::loadProjectFromFile(const wxString& fileName) {
    return vpc::loadOrLog([&] {
        loadProject(fileName,
                    std::make_unique<vpc::PointTreeReader>(
                        StringTools::ReplaceFileExtension(fileName, PointTreeLayout::extension)));
    });
}

void PcCoreProjectManager::loadProject(const wxString& fileName,
                                       std::unique_ptr<vpc::PointTreeReader> treeFile) {
    treeFile->RequireVersion();
    const auto unit = static_cast<std::uint32_t>(treeFile->Header().hostValue);
    if (treeFile->FileName() != fileName)
        treeFile = std::make_unique<vpc::PointTreeReader>(fileName);
    auto tree = std::make_unique<VpcDiskTree>();
    tree->Load(std::move(treeFile));

    visibleNodeManager_.clear();
    tree_ = std::move(tree);
    workingFolder_ = folderOf(fileName);
    pointModelUnit_ = unit;
    SetDataBounds();
    totalNrPoints = tree_->totalNrPoints();
    selectedLevel = 1;
}

void PcCoreProjectManager::SetDataBounds() {
    constexpr double margin = 1.05;
    dataMin_ = OdGePoint3d(noMinimum, noMinimum, noMinimum);
    dataMax_ = OdGePoint3d(noMaximum, noMaximum, noMaximum);
    if (tree_->GetRootNode() == nullptr) return;
    VpcBoundingBoxAxisAligned box = tree_->GetRootNode()->box;
    box.Scale(margin);
    dataMin_ = OdGePoint3d(box.minPoint.x, box.minPoint.y, box.minPoint.z);
    dataMax_ = OdGePoint3d(box.maxPoint.x, box.maxPoint.y, box.maxPoint.z);
}

bool PcCoreProjectManager::readDataMinMax(const OdString& fileName, OdGePoint3d& min,
                                          OdGePoint3d& max) {
    return VpcDiskTreeQuerier(fileName).rootNodeExtents(min, max);
}

// --- Views ---------------------------------------------------------------------------------------

bool PcCoreProjectManager::hasViewGeometryChanged(const OdGeMatrix3d& /*matrix*/,
                                                  const OdGePoint3d& camera,
                                                  const OdGePoint3d& target,
                                                  const OdGeVector3d& viewVector, double fieldWidth,
                                                  double fieldHeight, int viewportWidth,
                                                  int viewportHeight, bool perspective) const {
    return lastView_.DiffersFrom({camera, target, viewVector, fieldWidth, fieldHeight,
                                  viewportWidth, viewportHeight, perspective});
}

unsigned long long PcCoreProjectManager::updateVisiblePoints(
    const OdGeMatrix3d& matrix, const OdGePoint3d& camera, const OdGePoint3d& target,
    const OdGeVector3d& viewVector, double fieldWidth, double fieldHeight, int viewportWidth,
    int viewportHeight, bool perspective) {
    lastView_ = {camera,      target,        viewVector,     fieldWidth,
                 fieldHeight, viewportWidth, viewportHeight, perspective};
    pixelSize = fieldWidth / viewportWidth;
    // Whatever was set before: hosts always see one level throughout, and no view writes files.
    drawGeometry = false;
    useFlatView = true;
    cameraDistance = DistanceToRootCentre(camera);

    const VpcTransform3D toTree(matrix.inverse());
    viewFrustum_.UpdateViewGeometry(toVpcPoint(camera), toVpcPoint(target), toVpcVector(viewVector),
                                    cameraDistance, fieldWidth, fieldHeight, perspective, toTree);
    FillBuffers(toTree);
    visibleNodeManager_.updateColormapForPointsInBuffer(matrix, colorScheme, stylizationType);
    // This never happens as long as the flag is reset above.
    if (drawGeometry) exportView(workingFolder_);
    return visibleNodeManager_.nrPointsInBuffer;
}

void PcCoreProjectManager::FillBuffers(const VpcTransform3D& toTree) {
    visibleNodeManager_.clear();
    missingPoints = 0;
    if (tree_ == nullptr) return;
    if (sectionsEnabled)
        tree_->SetSectionPlanes(sections_, toTree);
    else
        tree_->ClearSectionPlanes();
    tree_->SetLocalClippings(clippings_);
    if (!lastView_.SpansSpace()) {
        selectedLevel = 0;
        return;
    }
    const unsigned long long missingBefore = tree_->MissingPoints();
    if (useFlatView)
        flatNodeSelection(viewFrustum_);
    else
        dynamicNodeSelection(viewFrustum_);
    missingPoints = tree_->MissingPoints() - missingBefore;
}

double PcCoreProjectManager::DistanceToRootCentre(const OdGePoint3d& camera) const {
    const VpcDiskNode* const root = Root();
    return root == nullptr ? 0.0 : toVpcPoint(camera).DistanceTo(root->box.Centre());
}

VpcDiskNode* PcCoreProjectManager::Root() const {
    return tree_ == nullptr ? nullptr : tree_->GetRootNode();
}

std::span<VpcDiskNode* const> PcCoreProjectManager::Level(unsigned long long level) const {
    if (level >= NrLevels()) return {};
    return tree_->GetLevels()[level];
}

unsigned long long PcCoreProjectManager::NrLevels() const {
    return tree_ == nullptr ? 0 : tree_->GetLevels().size();
}

PcCoreProjectManager::NodeList PcCoreProjectManager::flatNodeSelection(
    const VpcFrustumDef& frustum) {
    const unsigned long long capacity = visibleNodeManager_.capacity;
    const unsigned long long threshold =
        static_cast<int>(drawDensity) != 0 ? capacity - 1 : capacity / 5;
    selectedLevel = 0;
    for (unsigned long long level = 0; level < NrLevels() && level <= deepestLevel; ++level) {
        if (getNrPointsInFrustumLOD(frustum, level) >= threshold) break;
        selectedLevel = level;
    }

    NodeList selected;
    for (VpcDiskNode* const node : Level(selectedLevel)) {
        if (!frustum.Intersects(node->box)) continue;
        selected.push_back(node);
        // A node that does not fit is left out; a smaller one after it may still fit.
        const unsigned long long used = visibleNodeManager_.nrPointsInBuffer;
        if (used < capacity && node->nrPoints < capacity - used) visibleNodeManager_.addNode(node);
    }
    return selected;
}

PcCoreProjectManager::NodeList PcCoreProjectManager::dynamicNodeSelection(
    const VpcFrustumDef& frustum) {
    const unsigned long long capacity = visibleNodeManager_.capacity;
    NodeList selected;
    VpcDiskNode* const root = Root();
    if (root != nullptr && frustum.Intersects(root->box)) selected.push_back(root);
    unsigned long long total = getNrPointsInSelectedNodes(selected);
    while (total < capacity && RefineSparsestNode(frustum, total, selected))
        total = getNrPointsInSelectedNodes(selected);
    for (VpcDiskNode* const node : selected) visibleNodeManager_.addNode(node);
    return selected;
}

bool PcCoreProjectManager::RefineSparsestNode(const VpcFrustumDef& frustum,
                                              unsigned long long total, NodeList& selected) const {
    const unsigned long long capacity = visibleNodeManager_.capacity;
    NodeList children;
    for (std::size_t i = 0; i < selected.size(); ++i) {
        const VpcDiskNode* const node = selected[i];
        if (node->nrPoints == 0 || node->children.empty()) continue;
        const auto [ownPoints, childPoints] =
            checkReplaceParentByVisibleChildren(frustum, node, children);
        if (childPoints == 0 || total - ownPoints + childPoints >= capacity) continue;
        PopNode(selected, static_cast<int>(i));
        for (VpcDiskNode* const child : children) PushNode(selected, child);
        return true;
    }
    return false;
}

unsigned long long PcCoreProjectManager::getNrPointsInFrustumLOD(const VpcFrustumDef& frustum,
                                                                 unsigned long long level) const {
    unsigned long long points = 0;
    for (const VpcDiskNode* const node : Level(level))
        if (frustum.Intersects(node->box)) points += node->nrPoints;
    return points;
}

std::pair<unsigned long long, unsigned long long>
PcCoreProjectManager::checkReplaceParentByVisibleChildren(const VpcFrustumDef& frustum,
                                                          const VpcDiskNode* parent,
                                                          NodeList& out) const {
    out.clear();
    for (VpcDiskNode* const child : parent->children) {
        const bool leadsToPoints = child->nrPoints > 0 || !child->children.empty();
        if (leadsToPoints && frustum.Intersects(child->box)) out.push_back(child);
    }
    return {parent->nrPoints, getNrPointsInSelectedNodes(parent->children)};
}

unsigned long long PcCoreProjectManager::getNrPointsInSelectedNodes(const NodeList& nodes) const {
    unsigned long long points = 0;
    for (const VpcDiskNode* const node : nodes) points += node->nrPoints;
    return points;
}

bool PcCoreProjectManager::exportView(const wxString& folder) const {
    return visibleNodeManager_.exportVisibleNodesAsPly(
        folder, useFlatView, lastView_.camera, lastView_.target, lastView_.viewVector, DataBounds(),
        lastView_.fieldWidth, lastView_.fieldHeight, pixelSize, viewFrustum_);
}

bool PcCoreProjectManager::exportPick(const wxString& folder) const {
    return visibleNodeManager_.exportPickNodesAsPly(
        folder, lastPickView_.camera, lastPickView_.target, lastPickView_.viewVector,
        lastPickPoint_, DataBounds(), lastPickView_.fieldWidth, lastPickView_.fieldHeight,
        pickFrustum_);
}

OdGeExtents3d PcCoreProjectManager::DataBounds() const {
    OdGeExtents3d bounds;
    bounds.set(dataMin_, dataMax_);
    return bounds;
}

// --- Sections and clippings ----------------------------------------------------------------------

bool PcCoreProjectManager::addSection(const OdString& name, const OdGePoint3d& point,
                                      const OdGeVector3d& normal, bool /*flag*/) {
    sectionsEnabled = true;
    sections_.emplace_back(name, VpcPlaneDef(toVpcPoint(point), toVpcVector(normal)));
    return true;
}

bool PcCoreProjectManager::hasSameSections(
    const std::vector<std::pair<OdGePoint3d, OdGeVector3d>>& planes) const {
    return std::equal(planes.begin(), planes.end(), sections_.begin(), sections_.end(),
                      [](const auto& plane, const Section& section) {
                          // Hosts pass them exchanged.
                          const auto& [normal, point] = plane;
                          return VpcPlaneDef({point.x, point.y, point.z},
                                             {normal.x, normal.y, normal.z})
                              .IsSame(section.second, sameSectionTolerance);
                      });
}

bool PcCoreProjectManager::toggleEnableDisableSections() {
    sectionsEnabled = !sectionsEnabled;
    return true;
}

bool PcCoreProjectManager::deleteSections(bool /*flag*/) {
    sectionsEnabled = false;
    sections_.clear();
    return true;
}

void PcCoreProjectManager::addClipping(const GiPcClipConfig& clipping) {
    clippings_.push_back(clipping);
}

void PcCoreProjectManager::removeLastClipping() {
    if (!clippings_.empty()) clippings_.pop_back();
}

void PcCoreProjectManager::clearClippings() {
    clippings_.clear();
}

// --- Picking -------------------------------------------------------------------------------------

bool PcCoreProjectManager::pickPointFast(const OdGeMatrix3d& matrix, const OdGePoint3d& camera,
                                         const OdGePoint3d& target, const OdGeVector3d& viewVector,
                                         double fieldWidth, double fieldHeight, int viewportWidth,
                                         int viewportHeight, bool perspective,
                                         OdGePoint3d pickPoint, int pickBoxPixels,
                                         OdGePoint3d& result, unsigned short& /*red*/,
                                         unsigned short& /*green*/, unsigned short& /*blue*/) {
    const vpc::CameraView view{camera,      target,        viewVector,     fieldWidth,
                               fieldHeight, viewportWidth, viewportHeight, perspective};
    return Pick(matrix, view, pickPoint, pickBoxPixels, result);
}

void PcCoreProjectManager::getOsnapPoints(const OdGePoint3d& pickPoint,
                                          const OdGePoint3d& /*second*/, const OdGeMatrix3d& matrix,
                                          const OdGeMatrix3d& /*secondMatrix*/,
                                          OdArray<OdGePoint3d>& snapPoints) {
    OdGePoint3d found;
    if (Pick(matrix, lastView_, pickPoint, snapBoxPixels, found)) snapPoints.append(found);
}

bool PcCoreProjectManager::Pick(const OdGeMatrix3d& matrix, const vpc::CameraView& view,
                                const OdGePoint3d& pickPoint, int pickBoxPixels,
                                OdGePoint3d& result) {
    drawGeometry = false;
    cameraDistance = DistanceToRootCentre(view.camera);
    if (!view.SpansSpace() || pickBoxPixels <= 0) return false;

    lastPickView_ = view;
    lastPickPoint_ = pickPoint;
    const OdGeMatrix3d inverse = matrix.inverse();
    const VpcPoint3D camera = toVpcPoint(view.camera);
    pickFrustum_.UpdatePickGeometry(camera, toVpcPoint(view.target), toVpcPoint(pickPoint),
                                    toVpcVector(view.viewVector), cameraDistance,
                                    view.fieldWidth / view.viewportWidth * pickBoxPixels,
                                    view.fieldHeight / view.viewportHeight * pickBoxPixels,
                                    view.perspective, VpcTransform3D(inverse));
    visibleNodeManager_.updateNodesInPickFrustum(pickFrustum_, camera);
    return visibleNodeManager_.getPickPoint(pickFrustum_, result, inverse);
}
