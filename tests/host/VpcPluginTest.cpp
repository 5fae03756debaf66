#include "host/VpcPlugin.h"

#include <dlfcn.h>
#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <map>
#include <memory>

#include <gmock/gmock.h>

#include "platform/OdError.h"
#include "support/ViewFixture.h"

namespace vpc::test {

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

/// Where an entity stands that was moved.
const Pose farAway{{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, {0, 300, 10}};

/// A host, which has nothing of the library but the plug-in.
class VpcPluginTest : public ViewTest {
protected:
    template <class Function>
    Function* find(const char* name) const {
        void* const found = dlsym(plugin_.get(), name);
        EXPECT_NE(found, nullptr) << dlerror();
        return reinterpret_cast<Function*>(found);
    }
    void loadPlugged() {
        shown = loadPointSet(name(), "", problem);
        ASSERT_NE(shown, nullptr) << problem;
    }
    ViewFacts facts() const {
        ViewFacts told;
        EXPECT_TRUE(getViewFacts(*shown, told));
        return told;
    }
    ~VpcPluginTest() override { extension->cleanPointSet(shown); }

private:
    const std::unique_ptr<void, int (*)(void*)> plugin_{dlopen(VPC_PLUGIN, RTLD_NOW | RTLD_LOCAL),
                                                        dlclose};

protected:
// The functions are looked for, not linked.
#define FIND(function) find<decltype(function)>(#function)
    decltype(&vpcPreparePointDataObserved) prepareObserved = FIND(vpcPreparePointDataObserved);
    decltype(&vpcLoadPointSet) loadPointSet = FIND(vpcLoadPointSet);
    decltype(&vpcGetViewFacts) getViewFacts = FIND(vpcGetViewFacts);
    decltype(&vpcGetSchemeColour) getSchemeColour = FIND(vpcGetSchemeColour);
    decltype(&vpcOpenLog) openLog = FIND(vpcOpenLog);
    decltype(&vpcCloseLog) closeLog = FIND(vpcCloseLog);
    decltype(&vpcExportView) exportView = FIND(vpcExportView);
    decltype(&vpcExportPick) exportPick = FIND(vpcExportPick);
    const std::unique_ptr<PcDbPointCloudDefPE> extension{FIND(vpcCreatePointCloudExtension)()};
#undef FIND
    GiPointSetDefinition* shown = nullptr;
    wxString problem;
};

TEST_F(VpcPluginTest, LoadsAndDrawsForAHost) {
    load(100);
    shown = extension->loadProject(nullptr, "t.vpt", name());
    ASSERT_NE(shown, nullptr);
    pointMax.set(4321);  // the host's variables are the plug-in's
    EXPECT_EQ(update(*shown, overview), 100U);
    EXPECT_EQ(shown->maxNrPointsInBuffer(), 4321U);
    patch(0, 8);
    EXPECT_THROW(extension->loadProject(nullptr, "t.vpt", name()), OdError);
}

TEST_F(VpcPluginTest, SaysWhyAFileIsNotLoaded) {
    load(500);
    const std::string whole = readBytes(folder.output());
    writeBytes(folder.file("8.vpt"), '\10' + whole.substr(1));
    writeBytes(folder.file("60.vpt"), whole.substr(0, 60));
    writeBytes(folder.file("cut.vpt"), whole.substr(0, whole.size() - 1));
    const std::pair<const char*, const char*> cases[] = {
        {"8.vpt", " vpt version is 8 but software expects version 9"},
        {"none.vpt", " does not exist as a file"},
        {"60.vpt", " is too short for a point tree file (60 bytes)"},
        {"cut.vpt", " ends before the points of node"}};
    EXPECT_FALSE(openLog(toWx(folder.file("none/log.txt"))) || openLog("/dev/full"));
    ASSERT_TRUE(openLog(toWx(folder.file("log.txt"))));
    EXPECT_FALSE(openLog(toWx(folder.file("other.txt")))) << "there is one already";
    std::string log;
    for (const auto& [file, why] : cases) {
        EXPECT_EQ(loadPointSet(file, name(), problem), nullptr) << file;
        EXPECT_THAT(problem.utf8_string(), StartsWith(folder.file(file) + why));
        EXPECT_THAT(log = readBytes(folder.file("log.txt")), HasSubstr(problem.utf8_string()));
    }
    closeLog();
    closeLog();
    ASSERT_NO_FATAL_FAILURE(loadPlugged());
    EXPECT_EQ(problem, "");
    EXPECT_THAT(readBytes(folder.file("log.txt")), StartsWith(log)) << "it was closed";
    EXPECT_TRUE(openLog(toWx(folder.file("other.txt"))));
    closeLog();
}

TEST_F(VpcPluginTest, TellsWhatAnUpdateDidAndWhatItCouldNotDo) {
    load(3000);
    ViewFacts told;
    EXPECT_FALSE(getViewFacts(PcCorePointSet(), told));
    ASSERT_NO_FATAL_FAILURE(loadPlugged());
    told = facts();
    EXPECT_EQ(told.level + told.nodes + told.budgetWanted, 0U);
    EXPECT_EQ(told.levels, folder.tree().levels.size());
    EXPECT_TRUE(told.boundsMin == set.dataMin() && told.boundsMax == set.dataMax());

    pointMax.set(1000);
    EXPECT_LT(update(*shown, overview), 1000U);
    told = facts();
    EXPECT_TRUE(told.budget == 1000 && told.budgetWanted == 1000);
    EXPECT_TRUE(0 < told.level && told.level + 1 < told.levels) << told.level;
    pointMax.set(4000);
    const Word all = update(*shown, overview);
    EXPECT_EQ(all, 3000U);
    told = facts();
    EXPECT_EQ(told.level + 1, told.levels);
    const auto deepest = folder.tree().levels.back();
    EXPECT_EQ(told.nodes, static_cast<Word>(std::count_if(
                              deepest.begin(), deepest.end(),
                              [](const TreeNode& node) { return node.pointCount > 0; })));
    EXPECT_EQ(told.pointsMissing, 0U);

    // The file is cut short, and made whole again.
    const std::string whole = readBytes(folder.output());
    fs::resize_file(folder.output(), whole.size() - 1000 * 54 - 7);
    const Word fewer = update(*shown, overview);
    EXPECT_TRUE(0 < fewer && fewer < all - 900) << fewer;
    told = facts();
    EXPECT_EQ(told.pointsMissing, all - fewer);
    EXPECT_EQ(told.problem, toWx(folder.output()) + " has become shorter since it was loaded");
    writeBytes(folder.output(), whole);
    EXPECT_EQ(update(*shown, overview), all);
    EXPECT_TRUE(facts().pointsMissing == 0 && facts().problem.empty());

#ifndef __SANITIZE_ADDRESS__
    // No memory for so many points.
    constexpr int tooMany = std::numeric_limits<int>::max();
    rlimit before{};
    getrlimit(RLIMIT_AS, &before);
    const rlimit less{rlim_t{8} << 30U, before.rlim_max};
    setrlimit(RLIMIT_AS, &less);
    pointMax.set(tooMany);
    update(*shown, overview);
    setrlimit(RLIMIT_AS, &before);
    told = facts();
    EXPECT_EQ(told.budgetWanted, static_cast<Word>(tooMany));
    EXPECT_EQ(told.budget, 4000U);
    // What the facts advise.
    pointMax.set(static_cast<int>(told.budget));
    EXPECT_EQ(update(*shown, overview), all);
    EXPECT_TRUE(facts().budget == facts().budgetWanted);
#endif
}

TEST_F(VpcPluginTest, GivesTheRampsThatUpdatesColourWith) {
    load(2000);
    ASSERT_NO_FATAL_FAILURE(loadPlugged());
    shown->setStylizationType(GiPc_Stylization_ELEVATION);
    update(*shown, overview);
    EXPECT_TRUE(facts().valueMin == 0.0 && facts().valueMax == 0.0);
    EXPECT_EQ(getSchemeColour(GiPc_ColorScheme_ScanColors, 0.5), 0U);
    const OdCmEntityColor* const colours = shown->getPointColors();
    for (int number = 1; number < 8; ++number) {
        const auto scheme = static_cast<GiPcColorScheme>(number);
        shown->setColorScheme(scheme);
        const Word count = update(*shown, farAway.placed(overview), farAway);
        const ViewFacts told = facts();
        double low = 1e9, high = -1e9;
        for (Word i = 0; i < count; ++i) {
            const double z = shown->getPointCoordinates()[i].z;
            low = std::min(low, z), high = std::max(high, z);
            const OdUInt32 ramp =
                getSchemeColour(scheme, (z - told.valueMin) / (told.valueMax - told.valueMin));
            // What lies on the border of two colours may be rounded to either.
            for (const unsigned shift : {0U, 8U, 16U})
                ASSERT_LE(std::abs(static_cast<int>(ramp >> shift & 255U) -
                                   static_cast<int>(colours[i].color() >> shift & 255U)),
                          1);
        }
        EXPECT_TRUE(told.valueMin == low && told.valueMax == high);
        EXPECT_EQ(getSchemeColour(scheme, -3), getSchemeColour(scheme, 0));
        EXPECT_EQ(getSchemeColour(scheme, HUGE_VAL), getSchemeColour(scheme, 1));
        EXPECT_NE(getSchemeColour(scheme, 0), getSchemeColour(scheme, 1));
    }
    shown->setStylizationType(GiPc_Stylization_INTENSITY);
    update(*shown, overview);
    EXPECT_TRUE(facts().valueMin >= 0 && facts().valueMax <= 255 &&
                facts().valueMin < facts().valueMax);
}

TEST_F(VpcPluginTest, ExportsTheLastViewAndPick) {
    load(1000);
    ASSERT_NO_FATAL_FAILURE(loadPlugged());
    const wxString into = toWx(folder.path());
    EXPECT_FALSE(exportView(*shown, into)) << "nothing was shown yet";
    update(*shown, overview);
    EXPECT_FALSE(exportPick(*shown, into)) << "nothing was picked yet";
    OdArray<OdGePoint3d> snaps;
    shown->getOsnapPoints(shown->getPointCoordinates()[0], {}, {}, {}, snaps);
    EXPECT_EQ(snaps.size(), 1U);
    const auto before = folder.names();
    EXPECT_TRUE(exportView(*shown, into) && exportPick(*shown, into));
    EXPECT_EQ(folder.names().size(), before.size() + 7);
    EXPECT_FALSE(exportView(*shown, into + "/none") || exportPick(*shown, into + "/none"));
    fs::remove(folder.file("InPickFrustum.ply"));
    fs::create_directory(folder.file("InPickFrustum.ply"));
    EXPECT_FALSE(exportPick(*shown, into)) << "one of its files cannot be written";
}

/// The camera that docs/host-integration.md lets hosts look from, moved back so that the volume in
/// view reaches behind the cloud.
ModelCamera reaching(ModelCamera camera, const ViewFacts& facts, const Pose& pose) {
    const Doubles3 low = fromOd(facts.boundsMin), high = fromOd(facts.boundsMax);
    const Doubles3 centre = moved(low, moved(high, low, -1), 0.5);
    const double away = distance(camera.eye, pose.toWorld(centre)) + distance(low, high) / 2;
    if (3 * distance(camera.eye, centre) >= away) return camera;
    const Doubles3 forward = unit(moved(camera.target, camera.eye, -1));
    const double back = (away + 3 * dot(moved(camera.eye, centre, -1), forward)) / 2;
    const double before = distance(camera.eye, camera.target);
    camera.eye = moved(camera.eye, forward, -back);
    if (camera.perspective) {
        camera.width *= (before + back) / before;
        camera.height *= (before + back) / before;
    }
    return camera;
}

TEST_F(VpcPluginTest, ACameraMovedBackSeesWhatTheFarPlaneCutOff) {
    load(2000);
    ASSERT_NO_FATAL_FAILURE(loadPlugged());
    const ViewFacts told = facts();
    const auto points = folder.tree().pointsOf(told.levels - 1);
    const std::pair<Pose, ModelCamera> cases[] = {
        {{}, {{50, 50, 50}, {50, 80, 50}, {0, 0, 1}, 30, 30, true}},
        {{}, {{48, 45, 52}, {40, 80, 70}, {0.1, 0, 1}, 80, 40, true}},
        {{}, {{50, 60, 50}, {50, 20, 30}, {0, 0, 1}, 60, 50, false}},
        {farAway, {{50, 60, 50}, {50, 350, 60}, {0, 0, 1}, 90, 90, true}},
        {farAway, {{50, 40, 50}, {60, 350, 60}, {0, 0, 1}, 90, 90, false}},
        {farAway, {{50, 300, 50}, {50, 350, 60}, {0, 0, 1}, 40, 90, true}}};
    int lacking = 0;
    for (const auto& [pose, camera] : cases) {
        const ModelVolume volume(camera, camera.target, camera.width, camera.height, 1e9, pose);
        const auto wanted = std::count_if(points.begin(), points.end(), [&](const PointRecord& p) {
            return volume.holds({p.x, p.y, p.z});
        });
        const auto seenFrom = [&, &pose = pose](const ModelCamera& from) {
            const Word count = update(*shown, from, pose);
            const OdGePoint3d* const first = shown->getPointCoordinates();
            return std::count_if(first, first + count, [&](const OdGePoint3d& p) {
                return volume.holds(pose.toTree(fromOd(p)));
            });
        };
        EXPECT_GT(wanted, 20);
        lacking += seenFrom(camera) + 10 < wanted;
        EXPECT_EQ(seenFrom(reaching(camera, told, pose)), wanted);
    }
    EXPECT_EQ(lacking, 5) << "all but the last, which is far from the unmoved cloud";
}

/// What a host's dialog notes, and whether it goes on once the scans are measured.
struct Dialog : PrepareObserver {
    bool onProgress(const PrepareProgress& progress) override {
        done[progress.stage] = progress.pointsDone;
        return true;
    }
    bool onScansMeasured(const ScanSummary& measured, const wxString&) override {
        summary = measured;
        return goesOn;
    }
    std::map<PrepareStage, Word> done;
    ScanSummary summary;
    bool goesOn = true;
};

TEST_F(VpcPluginTest, TellsTheHostsObserverAboutEveryScanBeforeItGoesOn) {
    writeBytes(folder.file("whole.pts"), "2\n1 2 3\n4 5 6\n");
    writeBytes(folder.file("short.pts"), "5\n7 8 9\n");
    TreePreparePars pars{6,  toWx(folder.work()),  {}, toWx(folder.output()), Tree_Octree,
                         50, static_cast<Word>(10)};
    for (const char* scan : {"whole.pts", "none.pts", "short.pts"})
        pars.inputFiles.push_back(toWx(folder.file(scan)));
    for (const bool goesOn : {false, true}) {
        Dialog dialog;
        dialog.goesOn = goesOn;
        TreePrepareResult result;
        EXPECT_EQ(prepareObserved(pars, dialog, result), goesOn);
        ASSERT_EQ(dialog.summary.scans.size(), 3U);
        wxString sentences;
        for (const ScanAccount& scan : dialog.summary.scans)
            for (const wxString& sentence : scan.sentences) sentences += "\n" + sentence;
        EXPECT_TRUE(dialog.summary.scans[0].IsWhole() && !dialog.summary.scans[1].opened);
        EXPECT_EQ(dialog.summary.scans[2].pointsWithoutValues, 4U);
        EXPECT_EQ('\n' + result.message,
                  goesOn ? sentences : wxString("\nPoint cloud preprocessing was cancelled"));
        EXPECT_EQ(fs::exists(folder.output()), goesOn);
        EXPECT_EQ(dialog.done[PrepareStage::MeasureScans], 7U);
        EXPECT_EQ(dialog.done.count(PrepareStage::WriteFile), goesOn ? 1U : 0U);
    }
}

TEST(VpcPlugin, ExportsTheHostFacingObjectsAndNothingElse) {
    std::vector<std::string> symbols;
    const std::string command = std::string("nm -D -C --defined-only '") + VPC_PLUGIN + "'";
    const std::unique_ptr<FILE, int (*)(FILE*)> nm(popen(command.c_str(), "r"), pclose);
    std::array<char, 4096> line{};
    while (std::fgets(line.data(), line.size(), nm.get()) != nullptr) {
        const std::string text(line.data());
        // Address, kind and name.
        symbols.push_back(text.substr(19, text.size() - 20));
    }
    const auto isHostFacing = testing::MatchesRegex(
        "vpcCreate(PointCloud|Properties)Extension|vpcPreparePointData(Observed)?|"
        "vpc(LoadPointSet|GetViewFacts|GetSchemeColour|OpenLog|CloseLog|ExportView|ExportPick)|"
        "((vtable|typeinfo|typeinfo name) for )?"
        "(PcCorePointSet|PcDbPointCloudDefImplPE|OPMPointCloudProperties)(::.*)?");
    EXPECT_THAT(symbols, testing::Each(isHostFacing));
    for (const char* needed : {"vpcCreatePropertiesExtension", "PcCorePointSet::preparePointData",
                               "PcCorePointSet::loadProjectFromFile", "vtable for PcCorePointSet",
                               "PcDbPointCloudDefImplPE::loadProject"})
        EXPECT_THAT(symbols, testing::Contains(testing::StartsWith(needed)));
    EXPECT_THAT(symbols, testing::Contains("vpcPreparePointData"));
}

}  // namespace

}  // namespace vpc::test
