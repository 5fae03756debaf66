// A CAD host in miniature. It is compiled with the library's headers and loads the library at run
// time:
//
//     vpc_host_example PLUGIN SCAN FOLDER
//
// PLUGIN is the path of libvpc_plugin.so, SCAN a LAS, PTS or PTX file, and FOLDER a place for the
// tree file and for temporary files. docs/host-integration.md explains each step.

#include <dlfcn.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include <wx/string.h>

#include "core/util/VpcDefinitions.h"
#include "host/VpcPlugin.h"
#include "platform/GiPointSetDefinition.h"
#include "platform/OdDbDatabase.h"
#include "platform/OdOPMClientExtension.h"
#include "platform/OdOPMExtensionManager.h"
#include "platform/OdSystemVariables.h"
#include "platform/PcDbPointCloud.h"
#include "platform/PcDbPointCloudDef.h"
#include "platform/PcDbPointCloudDefPE.h"
#include "platform/TreePreparePars.h"
#include "tree/construct/PrepareObserver.h"
#include "tree/construct/TreePrepareResult.h"

namespace {

// --- 1. The plug-in ------------------------------------------------------------------------------

class Plugin {
public:
    explicit Plugin(const char* path) : handle_(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {
        if (handle_ == nullptr) throw std::runtime_error(dlerror());
    }
    ~Plugin() { dlclose(handle_); }
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    /// One of the functions of host/VpcPlugin.h.
    template <class Function>
    Function* find(const char* name) const {
        void* const found = dlsym(handle_, name);
        if (found == nullptr) throw std::runtime_error(dlerror());
        return reinterpret_cast<Function*>(found);
    }

private:
    void* handle_;
};

// --- 2. From a scan to a tree file ---------------------------------------------------------------

/// What a host shows of a run. Returning false from either call would end it.
class ProgressBar : public PrepareObserver {
public:
    bool onProgress(const PrepareProgress& progress) override {
        const bool isDone = progress.pointsDone == progress.pointsInAll;
        if (isDone && progress.pointsDone != 0)
            std::printf("  stage %d is done\n", static_cast<int>(progress.stage));
        return true;
    }
    bool onScansMeasured(const ScanSummary& summary, const wxString&) override {
        for (const ScanAccount& scan : summary.scans) {
            std::printf("  %s holds %llu points\n", scan.file.utf8_string().c_str(), scan.points);
            for (const wxString& sentence : scan.sentences)
                std::printf("  %s\n", sentence.utf8_string().c_str());
        }
        return true;
    }
};

std::string prepare(const Plugin& plugin, const std::string& scan, const std::string& folder) {
    const std::string treeFile = folder + "/scan.vpt";
    TreePreparePars pars;
    pars.headerValue = OdDb::kUnitsMeters;  // comes back as the point set's unit
    pars.workingFolder = wxString::FromUTF8(folder + "/");
    pars.inputFiles = {wxString::FromUTF8(scan)};
    pars.outputFile = wxString::FromUTF8(treeFile);
    pars.treeType = Tree_Octree;
    pars.maxPointsPerNode = 2000;
    pars.maxLevel = 12;

    ProgressBar progress;
    TreePrepareResult result;
    if (!plugin.find<decltype(vpcPreparePointDataObserved)>("vpcPreparePointDataObserved")(
            pars, progress, result))
        throw std::runtime_error(result.message.utf8_string());
    return treeFile;
}

// --- 3. A drawing with a point cloud -------------------------------------------------------------

/// What a host keeps of a point cloud in a drawing: the entity in the drawing, and the definition
/// that it shows, which holds the points of a file.
class Drawing {
public:
    Drawing(const Plugin& plugin, PcDbPointCloudDefPE& loader, const std::string& treeFile)
        : loader_(loader) {
        database.setINSUNITS(OdDb::kUnitsMillimeters);
        definition.setActiveFileName(treeFile.c_str());
        // A relative name would be looked for beside the drawing.
        wxString problem;
        points = plugin.find<decltype(vpcLoadPointSet)>("vpcLoadPointSet")(
            definition.activeFileName(), L"/a.drawing", problem);
        if (points == nullptr) throw std::runtime_error(problem.utf8_string());
        definition.setPointSet(points);

        entity.setDatabase(&database);
        entity.upgradeOpen();
        entity.setPointCloudDefExId(OdDbObjectId(&definition));
        entity.setPointCloudName(L"Scan");
        entity.downgradeOpen();
    }
    ~Drawing() {
        definition.setPointSet(nullptr);
        loader_.cleanPointSet(points);
    }
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;

    OdDbDatabase database;
    PcDbPointCloudDef definition;
    PcDbPointCloud entity;
    GiPointSetDefinition* points = nullptr;

private:
    PcDbPointCloudDefPE& loader_;
};

// --- 4. Frames -----------------------------------------------------------------------------------

/// What the plug-in tells about the points besides what the host draws.
vpc::ViewFacts factsOf(const Plugin& plugin, const GiPointSetDefinition& points) {
    vpc::ViewFacts facts;
    if (!plugin.find<decltype(vpcGetViewFacts)>("vpcGetViewFacts")(points, facts))
        throw std::runtime_error("nothing is loaded");
    return facts;
}

struct Camera {
    OdGePoint3d eye;
    OdGePoint3d target;
    OdGeVector3d up;
    double field;
};

/// A camera on a circle around the cloud that looks down at the cloud's middle.
/// \param share how much of the cloud's size a picture shows
Camera cameraAt(const vpc::ViewFacts& facts, double angle, double share) {
    const OdGeVector3d size = facts.boundsMax - facts.boundsMin;
    const double distance = size.length();
    const double x = std::cos(angle), y = std::sin(angle), z = 0.5;
    Camera camera;
    camera.target = facts.boundsMin + size * 0.5;
    camera.eye = camera.target + OdGeVector3d(x, y, z) * distance;
    camera.up = OdGeVector3d(-x * z, -y * z, 1);  // square to the direction of view
    camera.field = share * distance;
    return camera;
}

/// One redraw. What it shows stands in three flat arrays, ready for the graphics card.
void drawFrame(GiPointSetDefinition& points, const Camera& camera) {
    const OdGeMatrix3d matrix;  // where the entity stands in the drawing
    constexpr int pixels = 800;
    if (points.hasViewGeometryChanged(matrix, camera.eye, camera.target, camera.up, camera.field,
                                      camera.field, pixels, pixels, true))
        points.updateVisiblePoints(matrix, camera.eye, camera.target, camera.up, camera.field,
                                   camera.field, pixels, pixels, true);

    const OdGePoint3d* const coordinates = points.getPointCoordinates();
    const OdCmEntityColor* const colours = points.getPointColors();
    const unsigned long long count = points.getNrVisiblePoints();
    if (count == 0) throw std::runtime_error("a frame without points");
    const OdGePoint3d& p = coordinates[count / 2];
    std::printf("  %llu points; the middle one: (%.2f %.2f %.2f), colour %02x%02x%02x\n", count,
                p.x, p.y, p.z, colours[count / 2].red(), colours[count / 2].green(),
                colours[count / 2].blue());
}

// --- 5. A click ----------------------------------------------------------------------------------

/// Snaps to a point that the last frame shows within 5 pixels of a place; false if there is none.
bool snap(GiPointSetDefinition& points, const OdGePoint3d& place) {
    OdArray<OdGePoint3d> found;
    const OdGeMatrix3d matrix;
    points.getOsnapPoints(place, place, matrix, matrix, found);
    for (const OdGePoint3d& p : std::as_const(found))
        std::printf("  snapped to (%.2f %.2f %.2f)\n", p.x, p.y, p.z);
    if (found.isEmpty()) std::printf("  nothing there\n");
    return !found.isEmpty();
}

// --- 6. The property palette ---------------------------------------------------------------------

std::string utf8(const OdString& text) {
    return wxString(text.c_str()).utf8_string();
}

std::string shown(const OPMVariant& value, const OdArray<OdString>& choices) {
    if (!choices.isEmpty()) return utf8(choices[static_cast<unsigned>(value.getInt())]);
    switch (value.varType()) {
        case OPMVariant::kBool:
            return value.getBool() ? "yes" : "no";
        case OPMVariant::kInt:
            return std::to_string(value.getInt());
        case OPMVariant::kDouble:
            return wxString::FromCDouble(value.getDouble()).utf8_string();
        case OPMVariant::kString:
            return utf8(value.getString());
        default:
            return "-";
    }
}

/// Prints what the palette shows of an entity: the properties that the extensions tell.
void listProperties(const OdDbEntity& entity) {
    for (OdOPMClientExtension* extension : odOPMExtensionManager()->extensions()) {
        OdArray<OPMPropertyEntry> properties;
        extension->getPropertyMap(entity.isA(), properties);
        for (const OPMPropertyEntry& property : std::as_const(properties)) {
            OPMVariant value;
            extension->getPropertyValue(&entity, property.id, property.name, value);
            std::printf("  %-16s %s\n", utf8(property.name).c_str(),
                        shown(value, property.predefinedStrings).c_str());
        }
    }
}

/// The user's choice in the palette reaches the entity. From there the host hands it to the points.
void colourByElevation(OdOPMClientExtension& palette, Drawing& drawing) {
    constexpr int stylization = 3;  // the ids of the property map
    constexpr int colourScheme = 4;
    palette.setPropertyValue(&drawing.entity, stylization, {}, OPMVariant(OdString(L"Elevation")));
    palette.setPropertyValue(&drawing.entity, colourScheme, {}, OPMVariant(OdString(L"Earth")));

    OPMVariant scheme;
    palette.getPropertyValue(&drawing.entity, colourScheme, {}, scheme);
    constexpr int elevation = 4;  // as the entity counts stylizations
    if (drawing.entity.stylizationType() == elevation)
        drawing.points->setStylizationType(GiPc_Stylization_ELEVATION);
    drawing.points->setColorScheme(static_cast<GiPcColorScheme>(scheme.getInt()));
}

// --- All of it -----------------------------------------------------------------------------------

void run(const char* pluginFile, const std::string& scan, const std::string& folder) {
    const Plugin plugin(pluginFile);
    std::printf("Preparing %s\n", scan.c_str());
    const std::string treeFile = prepare(plugin, scan, folder);

    const std::unique_ptr<PcDbPointCloudDefPE> loader(
        plugin.find<decltype(vpcCreatePointCloudExtension)>("vpcCreatePointCloudExtension")());
    const std::unique_ptr<OdOPMClientExtension> palette(
        plugin.find<decltype(vpcCreatePropertiesExtension)>("vpcCreatePropertiesExtension")());
    Drawing drawing(plugin, *loader, treeFile);
    const vpc::ViewFacts cloud = factsOf(plugin, *drawing.points);

    std::printf("Flying around it, with 60000 points at most\n");
    odSystemVariables().setInt("POINTCLOUDPOINTMAX", 60000);
    // Every frame comes nearer.
    for (int frame = 0; frame < 8; ++frame)
        drawFrame(*drawing.points, cameraAt(cloud, 0.7 * frame, 1.0 - 0.12 * frame));
    const vpc::ViewFacts facts = factsOf(plugin, *drawing.points);
    std::printf("  level %llu of %llu, %llu nodes\n", facts.level, facts.levels, facts.nodes);
    if (facts.pointsMissing != 0) throw std::runtime_error(facts.problem.utf8_string());

    std::printf("Clicking at a point that is shown, and at none\n");
    const OdGePoint3d point = drawing.points->getPointCoordinates()[0];
    if (!snap(*drawing.points, point)) throw std::runtime_error("no snap where a point is");
    if (snap(*drawing.points, cameraAt(cloud, 0, 1).eye))
        throw std::runtime_error("a snap where no point is");

    std::printf("Its properties, coloured by elevation\n");
    colourByElevation(*palette, drawing);
    listProperties(drawing.entity);
    // The same cloud in other colours.
    drawFrame(*drawing.points, cameraAt(cloud, 0, 1));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: vpc_host_example PLUGIN SCAN FOLDER\n");
        return 2;
    }
    try {
        std::filesystem::create_directories(argv[3]);
        run(argv[1], argv[2], argv[3]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    return 1;
}
