#include "host/PcCorePointSet.h"

#include <algorithm>
#include <memory>
#include <utility>

#include <wx/string.h>
#include <wx/translation.h>

#include "core/util/FileTools.h"
#include "core/util/StringTools.h"
#include "platform/OdError.h"
#include "platform/OdSystemVariables.h"
#include "tree/construct/PcCorePointPrepare.h"
#include "tree/disk/VpcDiskTree.h"
#include "tree/disk/VpcDiskTreeQuerier.h"
#include "tree/file/LoadLog.h"
#include "tree/file/PointTreeLayout.h"
#include "tree/file/PointTreeReader.h"
#include "view/PcCoreProjectManager.h"

namespace {

/// Of a file whose version is another one, or cannot be read.
class VersionFailure : public vpc::IoError {
public:
    VersionFailure(const IoError& reason, unsigned long long version)
        : IoError(reason), version_(version) {}

    /// The error that hosts know; it names the file `fileName`.
    OdError ForHost(const wxString& fileName) const {
        return OdError(StringTools::ToOdString(fileName + vpc::WrongTreeVersion::Text(version_)));
    }

private:
    unsigned long long version_;
};

std::unique_ptr<vpc::PointTreeReader> openCurrentVersion(const wxString& treeFile) {
    try {
        auto file = std::make_unique<vpc::PointTreeReader>(treeFile);
        file->RequireVersion();
        return file;
    } catch (const vpc::WrongTreeVersion& failure) {
        throw VersionFailure(failure, failure.Version());
    } catch (const vpc::IoError& failure) {
        // Hosts get the version that fileVptVersion gives for such a file; the reason stays.
        throw VersionFailure(failure, 0);
    }
}

}  // namespace

PcCorePointSet::PcCorePointSet()
    : dataMin_(PcCoreProjectManager::noMinimum, PcCoreProjectManager::noMinimum,
               PcCoreProjectManager::noMinimum),
      dataMax_(PcCoreProjectManager::noMaximum, PcCoreProjectManager::noMaximum,
               PcCoreProjectManager::noMaximum) {
}

PcCorePointSet::~PcCorePointSet() = default;

OdUInt32 PcCorePointSet::getPointModelUnit() const {
    return manager_ ? manager_->pointModelUnit() : 0;
}

bool PcCorePointSet::hasViewGeometryChanged(const OdGeMatrix3d& matrix, const OdGePoint3d& camera,
                                            const OdGePoint3d& target,
                                            const OdGeVector3d& viewVector, double fieldWidth,
                                            double fieldHeight, int viewportWidth,
                                            int viewportHeight, bool perspective) {
    return manager_ && manager_->hasViewGeometryChanged(matrix, camera, target, viewVector,
                                                        fieldWidth, fieldHeight, viewportWidth,
                                                        viewportHeight, perspective);
}

unsigned long long PcCorePointSet::updateVisiblePoints(
    const OdGeMatrix3d& matrix, const OdGePoint3d& camera, const OdGePoint3d& target,
    const OdGeVector3d& viewVector, double fieldWidth, double fieldHeight, int viewportWidth,
    int viewportHeight, bool perspective) {
    AdoptPointMax();
    if (!manager_) return 0;
    const unsigned long long count =
        manager_->updateVisiblePoints(matrix, camera, target, viewVector, fieldWidth, fieldHeight,
                                      viewportWidth, viewportHeight, perspective);
    CopyDataBounds(*manager_);
    return count;
}

void PcCorePointSet::AdoptPointMax() {
    // Like all small values, a negative one changes nothing.
    const OdInt32 pointMax = std::max(odSystemVariables().getInt("POINTCLOUDPOINTMAX"), 0);
    pointMax_ = static_cast<unsigned long long>(pointMax);
    if (pointMax_ != maxNrPointsInBuffer()) setMaxNrPointsInBuffer(pointMax_);
}

void PcCorePointSet::getOsnapPoints(const OdGePoint3d& pickPoint, const OdGePoint3d& second,
                                    const OdGeMatrix3d& matrix, const OdGeMatrix3d& secondMatrix,
                                    OdArray<OdGePoint3d>& snapPoints) {
    if (manager_) manager_->getOsnapPoints(pickPoint, second, matrix, secondMatrix, snapPoints);
}

unsigned long long PcCorePointSet::getNrVisiblePoints() const {
    return manager_ ? manager_->visibleNodeManager().nextSlot : 0;
}

const OdGePoint3d* PcCorePointSet::getPointCoordinates() const {
    return manager_ ? manager_->visibleNodeManager().coordinates() : nullptr;
}

const OdCmEntityColor* PcCorePointSet::getPointColors() const {
    return manager_ ? manager_->visibleNodeManager().colours() : nullptr;
}

const double* PcCorePointSet::getPointSizes() const {
    return manager_ ? manager_->visibleNodeManager().sizes() : nullptr;
}

unsigned long long PcCorePointSet::getTotalNrPoints() const {
    return manager_ ? manager_->totalNrPoints : 0;
}

GiPcDrawDensity PcCorePointSet::drawDensity() const {
    return manager_ ? manager_->drawDensity : GiPcDrawDensity{};
}

void PcCorePointSet::setDrawDensity(GiPcDrawDensity density) {
    if (manager_) manager_->drawDensity = density;
}

bool PcCorePointSet::useFlatView() const {
    return manager_ && manager_->useFlatView;
}

void PcCorePointSet::setUseFlatView(bool flat) {
    if (manager_) manager_->useFlatView = flat;
}

unsigned long long PcCorePointSet::maxNrPointsInBuffer() const {
    return manager_ ? manager_->visibleNodeManager().capacity : 0;
}

void PcCorePointSet::setMaxNrPointsInBuffer(unsigned long long count) {
    // When memory is short the old buffers stay: the host's interface has no way to tell.
    if (manager_) manager_->visibleNodeManager().resizePointBuffer(count);
}

GiPcStylizationType PcCorePointSet::stylizationType() const {
    return manager_ ? manager_->stylizationType : GiPcStylizationType{};
}

void PcCorePointSet::setStylizationType(GiPcStylizationType type) {
    if (manager_) manager_->stylizationType = type;
}

GiPcColorScheme PcCorePointSet::colorScheme() const {
    return manager_ ? manager_->colorScheme : GiPcColorScheme{};
}

void PcCorePointSet::setColorScheme(GiPcColorScheme scheme) {
    if (manager_) manager_->colorScheme = scheme;
}

bool PcCorePointSet::hasSameSections(
    const std::vector<std::pair<OdGePoint3d, OdGeVector3d>>& sections) {
    return manager_ && manager_->hasSameSections(sections);
}

bool PcCorePointSet::addSection(const OdString& name, const OdGePoint3d& point,
                                const OdGeVector3d& normal, bool flag) {
    return manager_ && manager_->addSection(name, point, normal, flag);
}

bool PcCorePointSet::clearSections(bool flag) {
    return manager_ && manager_->deleteSections(flag);
}

bool PcCorePointSet::addClipping(const GiPcClipConfig& config) {
    if (manager_) manager_->addClipping(config);
    return true;
}

bool PcCorePointSet::removeLastClipping() {
    if (manager_) manager_->removeLastClipping();
    return true;
}

bool PcCorePointSet::clearClippings() {
    if (manager_) manager_->clearClippings();
    return true;
}

bool PcCorePointSet::loadProjectFromFile(const OdString& fileName) {
    const wxString name = StringTools::FromOdString(fileName);
    fileName_ = fileName;
    return vpc::loadOrLog([&] {
        try {
            LoadProject(name);
        } catch (const VersionFailure& failure) {
            vpc::logLoadFailure(failure);
            throw failure.ForHost(name);
        }
    });
}

bool PcCorePointSet::loadProjectFromFile(const OdString& fileName, wxString& problem) {
    fileName_ = fileName;
    problem.clear();
    try {
        LoadProject(StringTools::FromOdString(fileName));
        return true;
    } catch (const vpc::IoError& failure) {
        vpc::logLoadFailure(failure);
        problem = failure.Message();
        return false;
    }
}

void PcCorePointSet::LoadProject(const wxString& fileName) {
    const wxString treeFile =
        StringTools::ReplaceFileExtension(fileName, PointTreeLayout::extension);
    if (!FileTools::FileExists(treeFile))
        throw vpc::IoError(treeFile, _("does not exist as a file"));
    // The old manager goes first, so that two sets of buffers are never held at once.
    manager_.reset();
    pointMax_ = 0;
    auto file = openCurrentVersion(treeFile);
    auto manager = std::make_unique<PcCoreProjectManager>();
    CopyDataBounds(*manager);
    manager->loadProject(fileName, std::move(file));
    CopyDataBounds(*manager);
    manager_ = std::move(manager);
}

void PcCorePointSet::CopyDataBounds(const PcCoreProjectManager& manager) {
    dataMin_ = manager.dataMin();
    dataMax_ = manager.dataMax();
}

bool PcCorePointSet::readDataMinMax(const OdString& fileName, OdGePoint3d& min, OdGePoint3d& max) {
    VpcDiskTreeQuerier querier(fileName);
    if (querier.version() == currentVptVersion()) return querier.rootNodeExtents(min, max);
    min = OdGePoint3d();
    max = OdGePoint3d();
    return false;
}

unsigned long long PcCorePointSet::fileVptVersion(const OdString& fileName) {
    return VpcDiskTree::ReadFileVersion(StringTools::FromOdString(fileName));
}

unsigned long long PcCorePointSet::currentVptVersion() {
    return PointTreeLayout::version;
}

TreePrepareResult PcCorePointSet::preparePointData(const TreePreparePars& pars) {
    const wxString outputFile = pars.outputFile;
    return PcCorePointPrepare::preparePointData(pars.headerValue, pars.workingFolder,
                                                pars.inputFiles, outputFile, pars.treeType,
                                                pars.maxPointsPerNode, pars.maxLevel);
}

TreePrepareResult PcCorePointSet::preparePointData(const TreePreparePars& pars,
                                                   PrepareObserver& observer) {
    return PcCorePointPrepare::preparePointData(pars.headerValue, pars.workingFolder,
                                                pars.inputFiles, pars.outputFile, pars.treeType,
                                                pars.maxPointsPerNode, pars.maxLevel, observer);
}

std::vector<std::pair<unsigned long long, unsigned long long>> PcCorePointSet::GetNodePointSummary()
    const {
    if (!manager_ || manager_->tree() == nullptr) return {};
    return manager_->tree()->GetNodePointSummary();
}

std::vector<double> PcCorePointSet::readPointIntensities() const {
    if (!manager_) return {};
    return manager_->visibleNodeManager().readStoredIntensities();
}

bool PcCorePointSet::getViewFacts(vpc::ViewFacts& facts) const {
    if (!manager_) return false;
    const PcCoreVisibleNodeManager& visible = manager_->visibleNodeManager();
    const VpcDiskTree& tree = *manager_->tree();
    facts = {};
    if (manager_->lastView().SpansSpace()) facts.level = manager_->selectedLevel;
    facts.levels = tree.GetLevels().size();
    facts.nodes = visible.visibleNodes().size();
    facts.pointsMissing = manager_->missingPoints;
    if (facts.pointsMissing != 0) facts.problem = tree.WhyPointsAreMissing();
    facts.budgetWanted = pointMax_;
    facts.budget = visible.slots();
    facts.boundsMin = dataMin_;
    facts.boundsMax = dataMax_;
    facts.valueMin = visible.rampRange().min;
    facts.valueMax = visible.rampRange().max;
    return true;
}

bool PcCorePointSet::resizePointBuffer(unsigned long count) {
    return manager_ && manager_->visibleNodeManager().resizePointBuffer(count);
}

void PcCorePointSet::setDrawGeometry(bool draw) {
    if (manager_) manager_->drawGeometry = draw;
}

bool PcCorePointSet::toggleEnableDisableSections() {
    return manager_ && manager_->toggleEnableDisableSections();
}
