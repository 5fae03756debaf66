#include "host/PcCorePointSet.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <limits>
#include <map>
#include <optional>

#include "core/util/VpcLogger.h"
#include "platform/OdError.h"
#include "platform/TreePreparePars.h"
#include "support/ViewFixture.h"
#include "tree/disk/VpcDiskTree.h"

namespace vpc::test {

namespace {

using testing::HasSubstr;
using testing::Not;

class PcCorePointSetTest : public ViewTest {
protected:
    void SetUp() override { load(3000); }
    /// The message of the error that loading ends with; nothing where it does not end with one.
    std::optional<wxString> loadError(const OdString& file) {
        try {
            set.loadProjectFromFile(file);
            return std::nullopt;
        } catch (const OdError& error) {
            return StringTools::FromOdString(error.description());
        }
    }
};

TEST_F(PcCorePointSetTest, RefusesOtherVersionsAndKeepsNothingLoaded) {
    const wxString file = toWx(folder.output());
    const auto text = [](const char* version) {
        return " vpt version is " + std::string(version) + " but software expects version 9";
    };
    // The lower half of the last one is 9.
    const std::pair<Word, const char*> cases[] = {
        {8, "8"}, {10, "10"}, {0, "0"}, {(1ULL << 32U) + 9, "2147483647"}};
    for (const auto& [version, told] : cases) {
        patch(0, version);
        EXPECT_EQ(loadError(name()), file + text(told));
        EXPECT_EQ(set.projectManager(), nullptr);
        EXPECT_EQ(PcCorePointSet::fileVptVersion(name()), version);
        OdGePoint3d low(7, 7, 7), high(7, 7, 7);
        EXPECT_FALSE(PcCorePointSet::readDataMinMax(name(), low, high));
        EXPECT_TRUE(low == OdGePoint3d() && high == OdGePoint3d());
    }
    EXPECT_EQ(PcCorePointSet::currentVptVersion(), 9U);
    // The version is that of the tree file beside whatever file is named, as the message says.
    patch(0, 8);
    EXPECT_EQ(loadError(toOd(folder.file("t.ptx"))), toWx(folder.file("t.ptx")) + text("8"));

    patch(0, 9);
    EXPECT_TRUE(set.loadProjectFromFile(name()));
    // Another name is loaded where it is that of a tree file with a ".vpt" beside it.
    const std::string tree = readBytes(folder.output());
    for (const char* copy : {"t", "alone"}) writeBytes(folder.file(copy), tree);
    const std::pair<const char*, bool> names[] = {{"t.las", false}, {"t", true}, {"alone", false}};
    for (const auto& [other, isLoaded] : names)
        EXPECT_EQ(set.loadProjectFromFile(toOd(folder.file(other))), isLoaded) << other;
    EXPECT_EQ(set.getTotalNrPoints(), 3000U) << "a missing .vpt changes nothing";
}

TEST_F(PcCorePointSetTest, ReadsTheStoredIntensitiesOfVisiblePoints) {
    std::map<Doubles3, double> stored;
    const TreeFile tree = folder.tree();
    for (const PointRecord& p : tree.pointsOf(tree.levels.size() - 1))
        stored[{p.x, p.y, p.z}] = p.intensity;
    EXPECT_TRUE(set.addSection("east", {40, 0, 0}, {1, 0, 0}, true));
    set.setStylizationType(GiPc_Stylization_INTENSITY);
    const Word shown = update(overview);
    ASSERT_GT(shown, 100U);
    ASSERT_LT(shown, 2900U);
    const std::vector<double> intensities = set.readPointIntensities();
    ASSERT_EQ(intensities.size(), shown);
    for (Word i = 0; i < shown; ++i)
        ASSERT_EQ(intensities[i], stored.at(fromOd(set.getPointCoordinates()[i]))) << i;
    std::filesystem::resize_file(folder.output(), 1000);
    EXPECT_LT(set.readPointIntensities().size(), shown);
    EXPECT_TRUE(PcCorePointSet().readPointIntensities().empty());
}

TEST_F(PcCorePointSetTest, StaysWithoutFileWhenThereIsNoneOrADamagedOne) {
    const OdString missing = toOd(folder.file("other.vpt"));
    EXPECT_EQ(PcCorePointSet::fileVptVersion(missing), 0U);
    for (const OdString& none : {OdString(""), toOd(folder.work()), missing})
        EXPECT_FALSE(set.loadProjectFromFile(none));
    EXPECT_EQ(set.fileName(), missing);
    EXPECT_EQ(set.getTotalNrPoints(), 3000U) << "a missing file changes nothing";
    const std::string whole = readBytes(folder.output());
    for (const Word length : {Word{60}, Word{whole.size() - 1}}) {
        writeBytes(folder.output(), whole.substr(0, length));
        EXPECT_FALSE(set.loadProjectFromFile(name())) << length;
        EXPECT_EQ(set.getPointCoordinates(), nullptr) << length;
        EXPECT_EQ(update(overview), 0U) << length;
    }
}

TEST_F(PcCorePointSetTest, SaysInTheLogWhyALoadFails) {
    const std::string whole = readBytes(folder.output());
    const auto ofVersion8 = [&] { return '\10' + whole.substr(1); };
    const std::tuple<const char*, std::string, const char*> cases[] = {
        {"none.vpt", "", "does not exist as a file"},
        {"folder.vpt", "", "does not exist as a file"},
        {"60.vpt", whole.substr(0, 60), "is too short for a point tree file (60 bytes)"},
        {"130.vpt", whole.substr(0, 130), "is too short for a point tree file (130 bytes)"},
        {"200.vpt", whole.substr(0, 200), "nodes in level 0, more than it has room for"},
        {"points.vpt", whole.substr(0, whole.size() - 1), "ends before the points of node"},
        {"8.vpt", ofVersion8(), " vpt version is 8 but software expects version 9"}};
    const auto logOf = [&](const std::function<void()>& load) {
        VpcLogger::Instance()->Open(toWx(folder.file("log.txt")));
        load();
        VpcLogger::Instance()->Close();
        return readBytes(folder.file("log.txt"));
    };
    PcCoreProjectManager manager;
    std::filesystem::create_directory(folder.file("folder.vpt"));
    for (const auto& [file, bytes, why] : cases) {
        const std::string path = folder.file(file);
        if (!bytes.empty()) writeBytes(path, bytes);
        const std::string expected = std::string("The point tree file ") + path;
        const std::string sets = logOf([&] { loadError(toOd(path)); });
        EXPECT_THAT(sets, testing::AllOf(HasSubstr(expected + ' '), HasSubstr(why))) << file;
        const std::string managers =
            logOf([&] { EXPECT_FALSE(manager.loadProjectFromFile(toWx(path))); });
        EXPECT_THAT(managers, HasSubstr(expected + ' ')) << file;
        EXPECT_THAT(managers, HasSubstr(bytes.empty() ? "cannot be opened (" : why)) << file;
    }
    EXPECT_THAT(logOf([&] { set.loadProjectFromFile(name()); }), Not(HasSubstr("point tree file")));
    EXPECT_THAT(logOf([&] {
                    VpcDiskTree& loaded = *project().tree();
                    EXPECT_FALSE(loaded.CreateFromFile(toWx(folder.output())));
                }),
                HasSubstr("holds a file already"));
}

TEST_F(ViewTest, APointSetAnswersWithNothingBeforeALoad) {
    set.setDrawDensity(GiPc_DrawDensity_Full);
    set.setUseFlatView(true);
    set.setMaxNrPointsInBuffer(1000);
    set.setStylizationType(GiPc_Stylization_INTENSITY);
    set.setColorScheme(GiPc_ColorScheme_Blues);
    set.setDrawGeometry(true);
    OdArray<OdGePoint3d> snaps = {{1, 2, 3}};
    set.getOsnapPoints({}, {}, {}, {}, snaps);
    EXPECT_EQ(snaps.size(), 1U);
    EXPECT_EQ(set.drawDensity(), GiPc_DrawDensity_Low);
    EXPECT_EQ(set.stylizationType(), GiPc_Stylization_SCANCOLORS);
    EXPECT_EQ(set.colorScheme(), GiPc_ColorScheme_ScanColors);
    EXPECT_EQ(update(overview), 0U);
    EXPECT_EQ(set.maxNrPointsInBuffer() + set.getPointModelUnit() + set.getNrVisiblePoints() +
                  set.getTotalNrPoints() + set.GetNodePointSummary().size(),
              0U);
    EXPECT_TRUE(!set.getPointCoordinates() && !set.getPointColors() && !set.getPointSizes());
    EXPECT_GT(set.dataMin().x, set.dataMax().x);
    EXPECT_FALSE(set.useFlatView() ||
                 set.hasViewGeometryChanged({}, {}, {}, {}, 1, 1, 1, 1, true) ||
                 set.resizePointBuffer(1000) || set.hasSameSections({}) ||
                 set.addSection("a", {}, {0, 0, 1}, true) || set.clearSections(true) ||
                 set.toggleEnableDisableSections());
    EXPECT_TRUE(set.addClipping({}) && set.removeLastClipping() && set.clearClippings());
}

TEST_F(PcCorePointSetTest, PreparesAsTheDriverDoes) {
    TreePreparePars pars;
    EXPECT_EQ(PcCorePointSet::preparePointData(pars).message,
              "Point cloud list of input files is empty...");
    pars.headerValue = 6;
    pars.workingFolder = toWx(folder.work());
    pars.inputFiles = {toWx(folder.file("t.ptx"))};
    pars.outputFile = toWx(folder.file("host.vpt"));
    pars.treeType = Tree_Octree;
    pars.maxPointsPerNode = 120;
    pars.maxLevel = 10;
    EXPECT_TRUE(PcCorePointSet::preparePointData(pars).success);
    EXPECT_TRUE(readBytes(folder.file("host.vpt")) == readBytes(folder.output()));
    OdGePoint3d low, high;
    ASSERT_TRUE(PcCorePointSet::readDataMinMax(name(), low, high));
    const TreeNode root = folder.tree().levels[0][0];
    EXPECT_EQ(low, toOd(root.boxMin));
    EXPECT_EQ(high, toOd(root.boxMax));
}

TEST_F(PcCorePointSetTest, TakesTheHostsPointMaxAsItsBudget) {
    EXPECT_EQ(set.maxNrPointsInBuffer(), 5000000U);
    pointMax.set(4000);
    EXPECT_EQ(update(overview), 3000U);
    const OdGePoint3d* coordinates = set.getPointCoordinates();
    for (const int unchanged : {4000, 50, 0, -1, std::numeric_limits<int>::min()}) {
        pointMax.set(unchanged);
        EXPECT_EQ(update(overview), 3000U) << unchanged;
        EXPECT_EQ(set.maxNrPointsInBuffer(), 4000U) << unchanged;
        EXPECT_EQ(set.getPointCoordinates(), coordinates) << unchanged;
    }
    for (const int budget : {51, 400, 5000}) {
        pointMax.set(budget);
        EXPECT_LT(update(overview), static_cast<Word>(budget));
        EXPECT_EQ(set.maxNrPointsInBuffer(), static_cast<Word>(budget));
    }
    EXPECT_TRUE(set.resizePointBuffer(50));
    EXPECT_EQ(set.maxNrPointsInBuffer(), 5000U);
    EXPECT_TRUE(set.resizePointBuffer(60));
    EXPECT_EQ(set.maxNrPointsInBuffer(), 60U);
}

}  // namespace

}  // namespace vpc::test
