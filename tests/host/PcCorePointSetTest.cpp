#include "host/PcCorePointSet.h"

#include <algorithm>
#include <limits>
#include <optional>

#include <wx/arrstr.h>
#include <wx/translation.h>

#include "platform/OdError.h"
#include "platform/TreePreparePars.h"
#include "support/HostScene.h"
#include "view/PcCoreProjectManager.h"

namespace vpc::test {

namespace {

/// A prepared file and the set that shows it.
class PcCorePointSetTest : public testing::Test {
protected:
    /// The message of the error that loading ends with; nothing where it does not end with one.
    std::optional<wxString> loadError(const OdString& name) {
        try {
            set.loadProjectFromFile(name);
            return std::nullopt;
        } catch (const OdError& error) {
            return StringTools::FromOdString(error.description());
        }
    }
    /// Expects a view from above to show the points of the scan that `isShown` lets through.
    template <class Condition>
    void expectView(const Condition& isShown) {
        std::vector<Doubles3> shown, expected;
        const Word count = viewFromAbove(set, scene.name());
        EXPECT_EQ(set.getNrVisiblePoints(), count);
        for (Word i = 0; i < count; ++i) {
            const OdGePoint3d& p = set.getPointCoordinates()[i];
            shown.push_back({p.x, p.y, p.z});
        }
        for (const PointRecord& p : scene.points)
            if (isShown(p)) expected.push_back({p.x, p.y, p.z});
        std::sort(shown.begin(), shown.end());
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(shown, expected);
    }
    void expectWholeView() {
        expectView([](const PointRecord&) { return true; });
    }

    const HostScene scene{{CloudShape::Clusters, 3000, 3, 255}};
    PcCorePointSet set;
};

/// A catalogue with one entry, as a host's translation would have it.
class OneEntryLoader : public wxTranslationsLoader {
public:
    wxMsgCatalog* LoadCatalog(const wxString& domain, const wxString& /*lang*/) override {
        const std::string entry = " vpt version is %d but software expects version %d";
        const std::string translated = " hat die Version %d statt %d";
        const auto length = static_cast<std::uint32_t>(entry.size());
        const std::uint32_t head[] = {
            0x950412DE, 0,  1,      28, 36,
            0,          44, length, 44, static_cast<std::uint32_t>(translated.size()),
            45 + length};
        bytes_ = std::string(reinterpret_cast<const char*>(head), sizeof head) + entry + '\0' +
                 translated + '\0';
        return wxMsgCatalog::CreateFromData(
            wxScopedCharBuffer::CreateNonOwned(bytes_.data(), bytes_.size()), domain);
    }
    wxArrayString GetAvailableTranslations(const wxString& /*domain*/) const override {
        const wxString language = "de";
        return wxArrayString(1, &language);
    }

private:
    std::string bytes_;
};

TEST_F(PcCorePointSetTest, RefusesOtherVersionsAndKeepsNothingLoaded) {
    const wxString name = toWx(scene.output());
    ASSERT_TRUE(set.loadProjectFromFile(scene.name()));
    const auto text = [](const char* version) {
        return " vpt version is " + std::string(version) + " but software expects version 9";
    };
    // The lower half of the last one is 9.
    const std::pair<Word, const char*> cases[] = {
        {8, "8"}, {10, "10"}, {0, "0"}, {(1ULL << 32U) + 9, "2147483647"}};
    for (const auto& [version, told] : cases) {
        scene.patch(0, version);
        EXPECT_EQ(loadError(scene.name()), name + text(told));
        EXPECT_EQ(set.projectManager(), nullptr);
        EXPECT_EQ(PcCorePointSet::fileVptVersion(scene.name()), version);
        OdGePoint3d low(7, 7, 7), high(7, 7, 7);
        EXPECT_FALSE(PcCorePointSet::readDataMinMax(scene.name(), low, high));
        EXPECT_TRUE(low == OdGePoint3d() && high == OdGePoint3d());
    }
    EXPECT_EQ(PcCorePointSet::currentVptVersion(), 9U);
    // The version is that of the tree file beside whatever file is named, as the message says.
    scene.patch(0, 8);
    EXPECT_EQ(loadError(toOd(scene.file("t.ptx"))), toWx(scene.file("t.ptx")) + text("8"));

    ASSERT_EQ(wxTranslations::Get(), nullptr);
    wxTranslations::Set(new wxTranslations);
    wxTranslations::Get()->SetLanguage("de");
    wxTranslations::Get()->SetLoader(new OneEntryLoader);
    EXPECT_TRUE(wxTranslations::Get()->AddCatalog("host", wxLANGUAGE_ENGLISH_US));
    EXPECT_EQ(loadError(scene.name()), name + " hat die Version 8 statt 9");
    wxTranslations::Set(nullptr);
    scene.patch(0, 9);
    EXPECT_TRUE(set.loadProjectFromFile(scene.name()));
}

TEST_F(PcCorePointSetTest, StaysWithoutFileWhenThereIsNoneOrADamagedOne) {
    const OdString missing = toOd(scene.file("other.vpt"));
    EXPECT_EQ(PcCorePointSet::fileVptVersion(missing), 0U);
    EXPECT_FALSE(set.loadProjectFromFile(missing));
    EXPECT_EQ(set.fileName(), missing);
    EXPECT_FALSE(set.loadProjectFromFile(""));
    EXPECT_FALSE(set.loadProjectFromFile(toOd(scene.work())));
    ASSERT_TRUE(set.loadProjectFromFile(scene.name()));
    EXPECT_FALSE(set.loadProjectFromFile(missing));
    EXPECT_EQ(set.getTotalNrPoints(), scene.points.size()) << "a missing file changes nothing";
    const std::string whole = readBytes(scene.output());
    for (const Word length : {Word{8}, Word{60}, Word{200}, scene.tree().pointDataPosition - 1,
                              Word{whole.size() - 1}}) {
        writeBytes(scene.output(), whole.substr(0, length));
        EXPECT_FALSE(set.loadProjectFromFile(scene.name())) << length;
        EXPECT_EQ(set.getPointCoordinates(), nullptr) << length;
        EXPECT_EQ(viewFromAbove(set, scene.name()), 0U) << length;
    }
}

TEST_F(PcCorePointSetTest, AnswersWithNothingBeforeALoad) {
    const auto view = [&](auto operation) {
        return fromAbove(set, {0, 0, 0}, {1, 1, 1}, operation);
    };
    set.setDrawDensity(GiPc_DrawDensity_Full);
    set.setUseFlatView(true);
    set.setMaxNrPointsInBuffer(1000);
    set.setStylizationType(GiPc_Stylization_INTENSITY);
    set.setColorScheme(GiPc_ColorScheme_Blues);
    set.setDrawGeometry(true);
    EXPECT_EQ(set.drawDensity(), GiPc_DrawDensity_Low);
    EXPECT_FALSE(set.useFlatView());
    EXPECT_EQ(set.maxNrPointsInBuffer(), 0U);
    EXPECT_EQ(set.stylizationType(), GiPc_Stylization_SCANCOLORS);
    EXPECT_EQ(set.colorScheme(), GiPc_ColorScheme_ScanColors);
    EXPECT_EQ(set.getPointModelUnit(), 0U);
    EXPECT_FALSE(view(&GiPointSetDefinition::hasViewGeometryChanged));
    EXPECT_EQ(view(&GiPointSetDefinition::updateVisiblePoints), 0U);
    OdArray<OdGePoint3d> snaps = {{1, 2, 3}};
    set.getOsnapPoints({}, {}, {}, {}, snaps);
    EXPECT_EQ(snaps.size(), 1U);
    EXPECT_EQ(set.getNrVisiblePoints(), 0U);
    EXPECT_EQ(set.getPointCoordinates(), nullptr);
    EXPECT_EQ(set.getPointColors(), nullptr);
    EXPECT_EQ(set.getPointSizes(), nullptr);
    EXPECT_EQ(set.getTotalNrPoints(), 0U);
    EXPECT_TRUE(set.GetNodePointSummary().empty());
    EXPECT_GT(set.dataMin().x, set.dataMax().x);
    EXPECT_FALSE(set.resizePointBuffer(1000));
    EXPECT_FALSE(set.hasSameSections({}));
    EXPECT_FALSE(set.addSection("a", {}, {0, 0, 1}, true));
    EXPECT_FALSE(set.clearSections(true));
    EXPECT_FALSE(set.toggleEnableDisableSections());
    EXPECT_TRUE(set.addClipping({}));
    EXPECT_TRUE(set.removeLastClipping());
    EXPECT_TRUE(set.clearClippings());
}

TEST_F(PcCorePointSetTest, PreparesAndShows) {
    TreePreparePars pars;
    EXPECT_EQ(PcCorePointSet::preparePointData(pars).message,
              "Point cloud list of input files is empty...");
    pars.headerValue = 6;
    pars.workingFolder = toWx(scene.work());
    pars.inputFiles = {toWx(scene.file("t.ptx"))};
    pars.outputFile = toWx(scene.file("host.vpt"));
    pars.treeType = Tree_KdTree_Symmetric;
    pars.maxPointsPerNode = 100;
    pars.maxLevel = 8;
    EXPECT_TRUE(PcCorePointSet::preparePointData(pars).success);
    EXPECT_TRUE(readBytes(scene.file("host.vpt")) == readBytes(scene.output()));

    ASSERT_TRUE(set.loadProjectFromFile(scene.name()));
    EXPECT_EQ(set.getPointModelUnit(), 6U);
    EXPECT_EQ(set.getTotalNrPoints(), scene.points.size());
    EXPECT_EQ(set.stylizationType(), GiPc_Stylization_NONE);
    EXPECT_EQ(set.drawDensity(), GiPc_DrawDensity_Full);
    const TreeFile tree = scene.tree();
    const auto summary = set.GetNodePointSummary();
    ASSERT_EQ(summary.size(), tree.levels.size());
    for (std::size_t level = 0; level < summary.size(); ++level)
        EXPECT_EQ(summary[level],
                  std::pair(Word{tree.levels[level].size()}, Word{tree.pointsOf(level).size()}));
    expectWholeView();
    const PointRecord first = tree.pointsOf(tree.levels.size() - 1)[0];
    EXPECT_EQ(set.getPointCoordinates()[0], OdGePoint3d(first.x, first.y, first.z));
    EXPECT_EQ(set.getPointColors()[0].color() & 0xFFFFFFU,
              first.red << 16U | first.green << 8U | first.blue);
    EXPECT_EQ(set.getPointSizes()[0], 1.0);
    OdGePoint3d low, high;
    ASSERT_TRUE(PcCorePointSet::readDataMinMax(scene.name(), low, high));
    const TreeNode& root = tree.levels[0][0];
    EXPECT_EQ(low, OdGePoint3d(root.boxMin[0], root.boxMin[1], root.boxMin[2]));
    EXPECT_EQ(high, OdGePoint3d(root.boxMax[0], root.boxMax[1], root.boxMax[2]));
    OdGeMatrix3d moved;
    moved[0][3] = 1000;
    EXPECT_EQ(viewFromAbove(set, scene.name(), moved), scene.points.size());
    EXPECT_DOUBLE_EQ(set.getPointCoordinates()[0].x, first.x + 1000);
}

TEST_F(PcCorePointSetTest, ForwardsSettingsSectionsAndClippings) {
    ASSERT_TRUE(set.loadProjectFromFile(scene.name()));
    set.setDrawDensity(GiPc_DrawDensity_Low);
    set.setUseFlatView(true);
    set.setStylizationType(GiPc_Stylization_ELEVATION);
    set.setColorScheme(GiPc_ColorScheme_Hydro);
    set.setDrawGeometry(true);
    EXPECT_EQ(set.drawDensity(), GiPc_DrawDensity_Low);
    EXPECT_TRUE(set.useFlatView());
    EXPECT_EQ(set.stylizationType(), GiPc_Stylization_ELEVATION);
    EXPECT_EQ(set.colorScheme(), GiPc_ColorScheme_Hydro);
    EXPECT_TRUE(set.projectManager()->drawGeometry);
    set.setDrawDensity(GiPc_DrawDensity_Full);

    const OdGePoint3d centre = set.dataMin() + (set.dataMax() - set.dataMin()) * 0.5;
    EXPECT_TRUE(set.addSection("cut", centre, {1, 0, 0}, false));
    EXPECT_FALSE(set.hasSameSections({}));
    expectView([&](const PointRecord& p) { return p.x >= centre.x; });
    EXPECT_LT(set.getNrVisiblePoints(), scene.points.size());
    EXPECT_TRUE(set.toggleEnableDisableSections());
    expectWholeView();
    EXPECT_TRUE(set.clearSections(true));
    EXPECT_TRUE(set.hasSameSections({}));

    GiPcClipConfig clip;
    clip.type = 1;
    clip.flag2 = true;
    clip.vertices = {{-1e9, -1e9}, {1e9, -1e9}, {1e9, centre.y}, {-1e9, centre.y}};
    EXPECT_TRUE(set.addClipping(clip));
    clip.vertices = {{1e9, 1e9}, {2e9, 1e9}, {2e9, 2e9}};
    EXPECT_TRUE(set.addClipping(clip));
    EXPECT_EQ(viewFromAbove(set, scene.name()), 0U);
    EXPECT_TRUE(set.removeLastClipping());
    expectView([&](const PointRecord& p) { return p.y < centre.y; });
    EXPECT_TRUE(set.clearClippings() && set.removeLastClipping());
    expectWholeView();

    // Snapping takes the box of 5 pixels, each of them 2 diagonals / 500 wide.
    OdArray<OdGePoint3d> snaps;
    const OdGePoint3d shown = set.getPointCoordinates()[0];
    set.getOsnapPoints(shown, {}, {}, {}, snaps);
    ASSERT_EQ(snaps.size(), 1U);
    const double reach = 5 * 2 * (set.dataMax() - set.dataMin()).length() / 500;
    EXPECT_LE(std::max(std::abs(snaps[0].x - shown.x), std::abs(snaps[0].y - shown.y)), reach);
    set.getOsnapPoints(set.dataMax() + OdGeVector3d(1e4, 1e4, 0), {}, {}, {}, snaps);
    EXPECT_EQ(snaps.size(), 1U);
}

TEST_F(PcCorePointSetTest, TakesTheHostsPointMaxAsItsBudget) {
    const PointMaxGuard pointMax(4000);
    ASSERT_TRUE(set.loadProjectFromFile(scene.name()));
    EXPECT_EQ(set.maxNrPointsInBuffer(), 5000000U);
    EXPECT_EQ(viewFromAbove(set, scene.name()), scene.points.size());
    const OdGePoint3d* coordinates = set.getPointCoordinates();
    for (const int unchanged : {4000, 50, 0, -1, std::numeric_limits<int>::min()}) {
        pointMax.set(unchanged);
        EXPECT_EQ(viewFromAbove(set, scene.name()), scene.points.size()) << unchanged;
        EXPECT_EQ(set.maxNrPointsInBuffer(), 4000U) << unchanged;
        EXPECT_EQ(set.getPointCoordinates(), coordinates) << unchanged;
    }
    for (const int budget : {51, 400, 5000}) {
        pointMax.set(budget);
        EXPECT_LT(viewFromAbove(set, scene.name()), static_cast<Word>(budget));
        EXPECT_EQ(set.maxNrPointsInBuffer(), static_cast<Word>(budget));
    }
    EXPECT_EQ(set.getNrVisiblePoints(), scene.points.size());
    EXPECT_TRUE(set.resizePointBuffer(50));
    EXPECT_EQ(set.maxNrPointsInBuffer(), 5000U);
    EXPECT_TRUE(set.resizePointBuffer(60));
    EXPECT_EQ(set.maxNrPointsInBuffer(), 60U);
}

/// Where an operation stands in the virtual table: the C++ ABI of the host's compilers keeps it in
/// the member pointer as its distance in bytes, plus 1.
template <class Operation>
std::size_t slotOf(Operation operation) {
    std::size_t word = 0;
    std::memcpy(&word, &operation, sizeof word);
    return (word - 1) / sizeof(void*) + 1;
}

template <class... Operations>
void expectSlotsInOrder(std::size_t first, Operations... operations) {
    for (const std::size_t slot : {slotOf(operations)...}) EXPECT_EQ(slot, first++);
}

TEST(GiPointSetDefinition, HasItsOperationsWhereTheHostCallsThem) {
    using Set = GiPointSetDefinition;
    // The two destructors come first.
    expectSlotsInOrder(
        3, &Set::getPointModelUnit, &Set::hasViewGeometryChanged, &Set::updateVisiblePoints,
        &Set::getOsnapPoints, &Set::getNrVisiblePoints, &Set::getPointCoordinates,
        &Set::getPointColors, &Set::getPointSizes, &Set::getTotalNrPoints, &Set::drawDensity,
        &Set::setDrawDensity, &Set::useFlatView, &Set::setUseFlatView, &Set::maxNrPointsInBuffer,
        &Set::setMaxNrPointsInBuffer, &Set::stylizationType, &Set::setStylizationType,
        &Set::colorScheme, &Set::setColorScheme, &Set::hasSameSections, &Set::addSection,
        &Set::clearSections, &Set::addClipping, &Set::removeLastClipping, &Set::clearClippings);
}

}  // namespace

}  // namespace vpc::test
