// Loads the input as a host would, looks at it from some sides and picks a point.

#include <array>
#include <memory>

#include "InputFile.h"
#include "Require.h"
#include "core/util/StringTools.h"
#include "host/PcCorePointSet.h"
#include "host/PcDbPointCloudDefImplPE.h"
#include "platform/GiPcClipConfig.h"
#include "platform/OdError.h"
#include "platform/OdSystemVariables.h"
#include "tree/disk/VpcDiskTree.h"
#include "tree/file/PointTreeLayout.h"
#include "view/PcCoreProjectManager.h"

namespace {

using vpc::fuzz::require;

struct View {
    OdGeMatrix3d matrix;
    OdGePoint3d camera;
    OdGePoint3d target;
    OdGeVector3d up;
    double field = 0;
    bool perspective = false;
};

/// Touches everything that a host would draw.
void draw(const GiPointSetDefinition& set) {
    const unsigned long long count = set.getNrVisiblePoints();
    require(count <= set.maxNrPointsInBuffer(), "the budget holds");
    for (unsigned long long i = 0; i < count; ++i) {
        require(set.getPointSizes()[i] >= 1.0, "no point is smaller than a pixel");
        require(set.getPointColors()[i].color() >> 24U == 0xC2U, "the colour method stays");
    }
}

void look(PcCorePointSet& set, const View& view, int budget) {
    constexpr int viewport = 200;
    odSystemVariables().setInt("POINTCLOUDPOINTMAX", budget);
    const auto shown =
        set.updateVisiblePoints(view.matrix, view.camera, view.target, view.up, view.field,
                                view.field, viewport, viewport, view.perspective);
    require(shown == set.getNrVisiblePoints(), "an update tells how many points there are");
    draw(set);
    set.hasViewGeometryChanged(view.matrix, view.camera, view.target, view.up, view.field,
                               view.field, viewport, viewport, view.perspective);
    OdArray<OdGePoint3d> picked;
    set.getOsnapPoints(view.target, {}, view.matrix, {}, picked);
    if (shown == 0) require(picked.isEmpty(), "nothing is picked where nothing is shown");
    if (shown > 0) set.getOsnapPoints(*set.getPointCoordinates(), {}, view.matrix, {}, picked);
}

/// A circle or a triangle in the plane of x and y, around a point.
GiPcClipConfig clipAround(const OdGePoint3d& centre, double size, bool circle, bool keepInside) {
    GiPcClipConfig clip;
    clip.type = circle ? 0 : 1;
    clip.flag2 = keepInside;
    clip.vertices.append(OdGePoint2d(centre.x, centre.y));
    clip.vertices.append(OdGePoint2d(centre.x + size, centre.y));
    if (!circle) clip.vertices.append(OdGePoint2d(centre.x, centre.y + size));
    return clip;
}

OdGeMatrix3d moved() {
    OdGeMatrix3d matrix;
    matrix[0][0] = matrix[1][1] = 0;
    matrix[0][1] = -1;
    matrix[1][0] = 1;
    matrix[0][3] = 1000;
    return matrix;
}

/// The selection that hosts do not reach, as diagnosis asks for it.
void selectDynamically(PcCoreProjectManager& manager) {
    manager.visibleNodeManager().clear();
    manager.dynamicNodeSelection(manager.viewFrustum());
}

void lookFromAllSides(PcCorePointSet& set) {
    const PcCoreProjectManager& manager = *set.projectManager();
    const OdGeVector3d extent = manager.dataMax() - manager.dataMin();
    const OdGePoint3d centre = manager.dataMin() + extent * 0.5;
    const double size = extent.length();
    set.setStylizationType(GiPc_Stylization_NONE);
    set.setDrawDensity(GiPc_DrawDensity_Full);
    View view{{}, centre + OdGeVector3d(0, 0, 2 * size), centre, {0, 1, 0}, 2 * size, false};
    constexpr int allPoints = 5000;
    constexpr int fewPoints = 60;
    look(set, view, allPoints);

    set.setStylizationType(GiPc_Stylization_ELEVATION);
    set.setColorScheme(GiPc_ColorScheme_Earth);
    set.addSection("cut", centre, OdGeVector3d(1, 0, -1), true);
    set.addClipping(clipAround(centre, size / 3, true, true));
    set.addClipping(clipAround(centre, size / 5, false, false));
    view.camera = centre + OdGeVector3d(size, -size, size);
    view.perspective = true;
    look(set, view, allPoints);

    set.setStylizationType(GiPc_Stylization_INTENSITY);
    set.setColorScheme(GiPc_ColorScheme_Spectrum);
    set.setDrawDensity(GiPc_DrawDensity_Low);
    set.clearSections(true);
    set.removeLastClipping();
    set.clearClippings();
    view.matrix = moved();
    view.target.transformBy(view.matrix);
    view.camera = view.target + OdGeVector3d(0, size / 10, size / 10);
    view.field = size / 10;
    look(set, view, fewPoints);
    selectDynamically(*set.projectManager());
}

void askWithoutView(const PcCorePointSet& set) {
    unsigned long long points = 0;
    for (const auto& [nodes, pointsOfLevel] : set.GetNodePointSummary()) points = pointsOfLevel;
    require(points == set.getTotalNrPoints(), "the deepest level holds all points");
    set.projectManager()->tree()->WriteSummary("/dev/null", true);
}

/// A tree file without levels, the smallest that loads.
std::array<std::uint8_t, 143> emptyTree() {
    std::array<std::uint8_t, 143> bytes{};
    bytes[PointTreeLayout::versionPosition] = PointTreeLayout::version;
    bytes[PointTreeLayout::pointRecordSizePosition(PointTreeLayout::wordSize)] =
        VpcPoint3D::recordSize;
    return bytes;
}

/// A point set as a host gets it from the extension; null where the file cannot be loaded.
using Loaded = std::unique_ptr<PcCorePointSet, void (*)(PcCorePointSet*)>;

Loaded load(const OdString& file) {
    static PcDbPointCloudDefImplPE extension;
    return {static_cast<PcCorePointSet*>(extension.loadProject(nullptr, file, {})),
            [](PcCorePointSet* set) { extension.cleanPointSet(set); }};
}

/// One point set for all inputs: a new one has buffers for five million points, which take longer
/// than all else.
PcCorePointSet& standingSet() {
    static const Loaded set = [] {
        const auto bytes = emptyTree();
        const vpc::fuzz::InputFile file(bytes.data(), bytes.size(), "empty.vpt");
        return load(StringTools::ToOdString(file.name()));
    }();
    return *set;
}

void lookAt(PcCorePointSet& set) {
    askWithoutView(set);
    lookFromAllSides(set);
}

/// All of a host's way.
void lookAsHost(const OdString& file) {
    try {
        const Loaded set = load(file);
        if (set) lookAt(*set);
    } catch (const OdError&) {
        require(PcCorePointSet::fileVptVersion(file) != PcCorePointSet::currentVptVersion(),
                "only another version is an error");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const vpc::fuzz::InputFile file(data, size, "vpt");
    const OdString name = StringTools::ToOdString(file.name());
    OdGePoint3d low, high;
    const bool bounds = PcCorePointSet::readDataMinMax(name, low, high);
    const bool ours = PcCorePointSet::fileVptVersion(name) == PcCorePointSet::currentVptVersion();
    require(ours || !bounds, "files of other versions have no bounds");
    if (!ours || file.IsOneIn(64)) lookAsHost(name);
    PcCorePointSet& set = standingSet();
    if (set.projectManager()->loadProjectFromFile(file.name())) lookAt(set);
    return 0;
}
