#include "vpc/view/LoadedPointSet.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <span>
#include <system_error>

#include "core/util/DisplayText.h"
#include "core/util/FileTools.h"
#include "core/util/StringTools.h"
#include "platform/OdError.h"
#include "platform/OdSystemVariables.h"
#include "tree/disk/VpcDiskNode.h"
#include "tree/disk/VpcDiskTree.h"
#include "tree/file/PointTreeReader.h"
#include "view/PcCoreProjectManager.h"
#include "view/PointBuffers.h"
#include "vpc/common/Command.h"
#include "vpc/common/NoPoints.h"
#include "vpc/common/SystemMemory.h"
#include "vpc/common/TreeFile.h"
#include "vpc/view/PictureFrame.h"

namespace vpc {

namespace {

OdGePoint3d toPoint(const VpcVector3D& v) {
    return {v.x, v.y, v.z};
}

OdGeVector3d toVector(const VpcVector3D& v) {
    return {v.x, v.y, v.z};
}

}  // namespace

LoadedPointSet::LoadedPointSet(const std::string& file) : file_(file) {
    requireTreeFile(file);
    try {
        set_ = extension_.loadProject(nullptr, AbsoluteName(), OdString());
    } catch (const OdError& error) {
        const wxString text = StringTools::FromOdString(error.description());
        throw CommandError(FileTools::ToNativePath(text) +
                           "; prepare it anew if it is a tree file");
    }
    if (set_ == nullptr) FailLoading();
}

LoadedPointSet::~LoadedPointSet() {
    extension_.cleanPointSet(set_);
}

OdString LoadedPointSet::AbsoluteName() const {
    return hostString(std::filesystem::absolute(file_).string());
}

void LoadedPointSet::FailLoading() const {
    // The host's interface tells no reason, so the file is asked once more.
    advising("see vpc verify, and get a complete copy or prepare it anew", [&] {
        VpcDiskTree().Load(std::make_unique<PointTreeReader>(FileTools::FromNativePath(file_)));
    });
    throw CommandError("'" + file_ + "' could not be loaded and now can be; run the command again");
}

void LoadedPointSet::SetBudget(unsigned long long points) {
    const auto refuse = [&] {
        throw CommandError("a budget of " + std::to_string(points) + " points takes " +
                           DisplayText::Bytes(points * PointBuffers::bytesPerSlot) +
                           " of memory, more than there is; give a smaller --budget");
    };
    if (points > systemMemory() / PointBuffers::bytesPerSlot) refuse();
    odSystemVariables().setInt("POINTCLOUDPOINTMAX", static_cast<int>(points));
    // The update would follow the variable too, but it could not report that memory is short.
    if (!Core().resizePointBuffer(static_cast<unsigned long>(points))) refuse();
}

unsigned long long LoadedPointSet::Levels() const {
    return Core().GetNodePointSummary().size();
}

void LoadedPointSet::SetLevel(unsigned long long level) {
    Core().projectManager()->deepestLevel = level;
}

PlacedBox LoadedPointSet::Box(const OdGeMatrix3d& matrix) const {
    OdGePoint3d low, high;
    const bool hasRoot = Manager().tree()->GetRootNode() != nullptr;
    if (!Core().readDataMinMax(AbsoluteName(), low, high) && hasRoot) FailReading();
    return {low, high, matrix};
}

std::optional<CameraOptions::Corners> LoadedPointSet::VisibleCorners() const {
    const std::span points(set_->getPointCoordinates(),
                           static_cast<std::size_t>(set_->getNrVisiblePoints()));
    if (points.empty()) return std::nullopt;
    OdGePoint3d low = points[0], high = points[0];
    for (const OdGePoint3d& p : points) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
    }
    return PlacedBox(low, high, OdGeMatrix3d()).corners;
}

std::vector<double> LoadedPointSet::Intensities() const {
    std::vector<double> intensities = Core().readPointIntensities();
    if (intensities.size() < set_->getNrVisiblePoints()) FailReading();
    return intensities;
}

const double* LoadedPointSet::Luminances() const {
    return Core().projectManager()->visibleNodeManager().intensities();
}

void LoadedPointSet::Update(const ViewCamera& camera, const OdGeMatrix3d& matrix) {
    set_->updateVisiblePoints(matrix, toPoint(camera.eye), toPoint(camera.target),
                              toVector(camera.up), camera.fieldWidth, camera.fieldHeight,
                              camera.viewport.width, camera.viewport.height, camera.perspective);
    // A host's view goes on with the points that could be read. Here the user would take them for
    // all.
    if (Core().projectManager()->tree()->LacksPoints()) FailReading();
}

void LoadedPointSet::FailReading() const {
    throw CommandError("'" + file_ +
                       "' can no longer be read in full: it has changed or its disk fails; see vpc "
                       "verify");
}

ViewReport LoadedPointSet::Report(double updateSeconds) const {
    ViewReport report;
    report.visiblePoints = set_->getNrVisiblePoints();
    report.visibleNodes = Core().projectManager()->visibleNodeManager().visibleNodes().size();
    report.selectedLevel = Core().projectManager()->selectedLevel;
    report.totalPoints = set_->getTotalNrPoints();
    report.capacity = set_->maxNrPointsInBuffer();
    report.minimum = Core().dataMin();
    report.maximum = Core().dataMax();
    report.levels = Core().GetNodePointSummary();
    report.updateSeconds = updateSeconds;
    return report;
}

const PcCoreProjectManager& LoadedPointSet::Manager() const {
    return *Core().projectManager();
}

unsigned long long LoadedPointSet::PointsInSight() const {
    if (!Manager().lastView().SpansSpace()) return 0;
    return Manager().getNrPointsInFrustumLOD(Manager().viewFrustum(), Manager().selectedLevel);
}

std::optional<std::string> LoadedPointSet::WhyEmpty(const ViewCamera& camera,
                                                    const Viewport& picture,
                                                    const OdGeMatrix3d& matrix) const {
    const unsigned long long shown = set_->getNrVisiblePoints();
    const OdGePoint3d* const points = set_->getPointCoordinates();
    const PictureFrame frame(camera, picture);
    // Nodes may reach into the picture with none of their points.
    if (std::any_of(points, points + shown, [&](const OdGePoint3d& p) {
            return frame.Shows({p.x, p.y, p.z});
        }))
        return std::nullopt;
    if (set_->getTotalNrPoints() == 0) return NoPoints::InFile(file_);
    const unsigned long long inSight = PointsInSight();
    if (shown > 0 || inSight == 0) return NoPoints::InSight(Box(matrix));
    const unsigned long long coarsest = Core().GetNodePointSummary().front().second;
    const unsigned long long budget = set_->maxNrPointsInBuffer();
    if (coarsest >= budget) return NoPoints::WithinBudget(budget, coarsest, coarsest + 1);
    return NoPoints::AfterCuts(std::to_string(inSight) + " points in sight", Box(matrix));
}

std::optional<std::string> LoadedPointSet::WhyCoarser() const {
    const unsigned long long wanted = Manager().deepestLevel;
    const unsigned long long shown = Manager().selectedLevel;
    if (wanted >= Levels() || shown >= wanted || !Manager().lastView().SpansSpace())
        return std::nullopt;
    const unsigned long long points =
        Manager().getNrPointsInFrustumLOD(Manager().viewFrustum(), shown + 1);
    return "level " + std::to_string(shown) + " is shown in place of " + std::to_string(wanted) +
           ": level " + std::to_string(shown + 1) + " has " + std::to_string(points) +
           " points in sight, more than --budget and --density allow";
}

std::optional<PickedPoint> LoadedPointSet::Pick(const ViewCamera& camera,
                                                const OdGeMatrix3d& matrix, const OdGePoint3d& at,
                                                int pixels) const {
    const auto shown = FindShown(camera, matrix, at, pixels);
    if (!shown) return std::nullopt;
    return PickedPoint{*shown, Stored(*shown)};
}

std::optional<OdGePoint3d> LoadedPointSet::FindShown(const ViewCamera& camera,
                                                     const OdGeMatrix3d& matrix,
                                                     const OdGePoint3d& at, int pixels) const {
    if (pixels == PcCoreProjectManager::snapBoxPixels) {
        OdArray<OdGePoint3d> found;
        set_->getOsnapPoints(at, at, matrix, matrix, found);
        if (found.isEmpty()) return std::nullopt;
        return found[0];
    }
    // The host's interface picks in no box of another size.
    OdGePoint3d found;
    unsigned short red = 0, green = 0, blue = 0;
    const bool hit = Core().projectManager()->pickPointFast(
        matrix, toPoint(camera.eye), toPoint(camera.target), toVector(camera.up), camera.fieldWidth,
        camera.fieldHeight, camera.viewport.width, camera.viewport.height, camera.perspective, at,
        pixels, found, red, green, blue);
    if (!hit) return std::nullopt;
    return found;
}

VpcPoint3D LoadedPointSet::Stored(const OdGePoint3d& shown) const {
    const PcCoreVisibleNodeManager& buffers = Manager().visibleNodeManager();
    const OdGePoint3d* const points = buffers.coordinates();
    // In the order in which a pick looks; it never takes the last point of a node.
    for (const VisiblePointsNode& visible : buffers.pickNodes()) {
        for (unsigned long long slot = visible.firstSlot; slot < visible.lastSlot; ++slot) {
            const OdGePoint3d& p = points[slot];
            if (p.x == shown.x && p.y == shown.y && p.z == shown.z)
                return ReadPoint(*visible.node, slot - visible.firstSlot);
        }
    }
    FailReading();
}

VpcPoint3D LoadedPointSet::ReadPoint(const VpcDiskNode& node, unsigned long long before) const {
    VpcDiskTree& tree = *Manager().tree();
    const std::span<const char> records = tree.ReadPointRecords(node.pointsOffset, node.nrPoints);
    VpcPoint3D point;
    for (std::size_t start = 0; start < records.size(); start += VpcPoint3D::recordSize) {
        point.FromRecord(records.data() + start);
        if (tree.Passes(point.x, point.y, point.z) && before-- == 0) return point;
    }
    FailReading();
}

void LoadedPointSet::WriteDiagnostics(const std::string& folder) const {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (!std::filesystem::is_directory(folder))
        throw CommandError("'" + folder + "' cannot be made (" + error.message() +
                           "); name another folder");
    const std::string path = std::filesystem::absolute(folder).string() + "/";
    Core().projectManager()->exportView(FileTools::FromNativePath(path));
    // The export itself reports no failure, since a host's view goes on without it.
    for (const char* name : {"CameraParameters.txt", "DataBoundaries.ply", "CameraViewFrustum.ply",
                             "InViewFrustum.ply"})
        if (!std::filesystem::exists(path + name))
            throw CommandError("'" + path + name +
                               "' cannot be written; name another folder or make room");
}

}  // namespace vpc
