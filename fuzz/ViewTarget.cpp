// Loads the input as a host would, looks at it from some sides and picks a point.

#include "InputFile.h"
#include "Require.h"
#include "core/util/StringTools.h"
#include "host/PcCorePointSet.h"
#include "host/PcDbPointCloudDefImplPE.h"
#include "platform/GiPcClipConfig.h"
#include "platform/OdError.h"
#include "platform/OdSystemVariables.h"
#include "tree/disk/VpcDiskTree.h"
#include "view/PcCoreProjectManager.h"

namespace {

using vpc::fuzz::require;

struct View {
    OdGeMatrix3d matrix;
    OdGePoint3d camera;
    OdGePoint3d target;
    double field = 0;
    bool perspective = false;
};

/// Touches everything that a host would draw, and picks the first point of it.
void look(PcCorePointSet& set, const View& view, int budget) {
    constexpr int viewport = 200;
    odSystemVariables().setInt("POINTCLOUDPOINTMAX", budget);
    const auto shown =
        set.updateVisiblePoints(view.matrix, view.camera, view.target, {0, 1, 0}, view.field,
                                view.field, viewport, viewport, view.perspective);
    require(shown == set.getNrVisiblePoints(), "an update tells how many points there are");
    require(shown <= set.maxNrPointsInBuffer(), "the budget holds");
    for (unsigned long long i = 0; i < shown; ++i) {
        require(set.getPointSizes()[i] >= 1.0, "no point is smaller than a pixel");
        require(set.getPointColors()[i].color() >> 24U == 0xC2U, "the colour method stays");
    }
    OdArray<OdGePoint3d> picked;
    set.getOsnapPoints(shown > 0 ? *set.getPointCoordinates() : view.target, {}, view.matrix, {},
                       picked);
    require(shown > 0 || picked.isEmpty(), "nothing is picked where nothing is shown");
}

/// A circle or a triangle in the plane of x and y, around a point.
GiPcClipConfig clipAround(const OdGePoint3d& centre, double size, bool circle) {
    GiPcClipConfig clip;
    clip.type = circle ? 0 : 1;
    clip.flag2 = circle;
    clip.vertices.append(OdGePoint2d(centre.x, centre.y));
    clip.vertices.append(OdGePoint2d(centre.x + size, centre.y));
    if (!circle) clip.vertices.append(OdGePoint2d(centre.x, centre.y + size));
    return clip;
}

void lookFromAllSides(PcCorePointSet& set) {
    PcCoreProjectManager& manager = *set.projectManager();
    const OdGeVector3d extent = manager.dataMax() - manager.dataMin();
    const OdGePoint3d centre = manager.dataMin() + extent * 0.5;
    const double size = extent.length();
    constexpr int allPoints = 5000;
    constexpr int fewPoints = 60;
    set.setStylizationType(GiPc_Stylization_NONE);
    set.setDrawDensity(GiPc_DrawDensity_Full);
    look(set, {{}, centre + OdGeVector3d(0, 0, 2 * size), centre, 2 * size, false}, allPoints);

    set.setStylizationType(GiPc_Stylization_ELEVATION);
    set.setColorScheme(GiPc_ColorScheme_Earth);
    set.addSection("cut", centre, OdGeVector3d(1, 0, -1), true);
    set.addClipping(clipAround(centre, size / 3, true));
    set.addClipping(clipAround(centre, size / 5, false));
    const OdGePoint3d aside = centre + OdGeVector3d(size, -size, size);
    look(set, {{}, aside, centre, 2 * size, true}, allPoints);

    set.setStylizationType(GiPc_Stylization_INTENSITY);
    set.setColorScheme(GiPc_ColorScheme_Spectrum);
    set.setDrawDensity(GiPc_DrawDensity_Low);
    set.clearSections(true);
    set.removeLastClipping();
    set.clearClippings();
    OdGeMatrix3d moved;
    moved[0][0] = moved[1][1] = 0;
    moved[0][1] = -1, moved[1][0] = 1;
    moved[0][3] = 1000;
    OdGePoint3d target = centre;
    target.transformBy(moved);
    const OdGePoint3d near = target + OdGeVector3d(0, size / 10, size / 10);
    look(set, {moved, near, target, size / 10, true}, fewPoints);
    // The selection that hosts do not reach, as diagnosis asks for it.
    manager.visibleNodeManager().clear();
    manager.dynamicNodeSelection(manager.viewFrustum());
}

void lookAt(PcCorePointSet& set) {
    unsigned long long points = 0;
    for (const auto& [nodes, pointsOfLevel] : set.GetNodePointSummary()) points = pointsOfLevel;
    require(points == set.getTotalNrPoints(), "the deepest level holds all points");
    set.projectManager()->tree()->WriteSummary("/dev/null", true);
    lookFromAllSides(set);
}

/// All of a host's way.
void lookAsHost(const OdString& file) {
    static PcDbPointCloudDefImplPE extension;
    try {
        auto* const set = static_cast<PcCorePointSet*>(extension.loadProject(nullptr, file, {}));
        if (set == nullptr) return;
        lookAt(*set);
        extension.cleanPointSet(set);
    } catch (const OdError&) {
        require(PcCorePointSet::fileVptVersion(file) != PcCorePointSet::currentVptVersion(),
                "only another version is an error");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // One for all inputs: a new one has buffers for five million points, which take longer than
    // all else.
    static PcCorePointSet set;
    const vpc::fuzz::InputFile file(data, size, "vpt");
    const OdString name = StringTools::ToOdString(file.name());
    OdGePoint3d low, high;
    const bool bounds = PcCorePointSet::readDataMinMax(name, low, high);
    const bool ours = PcCorePointSet::fileVptVersion(name) == PcCorePointSet::currentVptVersion();
    require(ours || !bounds, "files of other versions have no bounds");
    if (!ours || file.IsOneIn(64)) lookAsHost(name);
    if (set.projectManager()->loadProjectFromFile(file.name())) lookAt(set);
    return 0;
}
