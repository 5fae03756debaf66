#include "host/PcCorePointSet.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

#include <gtest/gtest.h>
#include <wx/arrstr.h>
#include <wx/translation.h>

#include "platform/OdError.h"
#include "support/HostScene.h"
#include "support/TreeFile.h"
#include "view/PcCoreProjectManager.h"

namespace vpc::test {

namespace {

using Coordinates = std::array<double, 3>;

/// The message of the error that loading ends with; nothing where it does not end with one.
std::optional<wxString> loadError(PcCorePointSet& set, const OdString& name) {
    try {
        set.loadProjectFromFile(name);
        return std::nullopt;
    } catch (const OdError& error) {
        return StringTools::FromOdString(error.description());
    }
}

std::vector<Coordinates> sortedView(const GiPointSetDefinition& set) {
    std::vector<Coordinates> shown;
    for (unsigned long long i = 0; i < set.getNrVisiblePoints(); ++i) {
        const OdGePoint3d& p = set.getPointCoordinates()[i];
        shown.push_back({p.x, p.y, p.z});
    }
    std::sort(shown.begin(), shown.end());
    return shown;
}

template <class Condition>
std::vector<Coordinates> sortedPoints(const HostScene& scene, const Condition& isShown) {
    std::vector<Coordinates> expected;
    for (const PointRecord& p : scene.points)
        if (isShown(p)) expected.push_back({p.x, p.y, p.z});
    std::sort(expected.begin(), expected.end());
    return expected;
}

bool isAny(const PointRecord& /*p*/) {
    return true;
}

/// A catalogue with one entry, as a host's translation would have it.
class OneEntryLoader : public wxTranslationsLoader {
public:
    wxMsgCatalog* LoadCatalog(const wxString& domain, const wxString& /*lang*/) override {
        return wxMsgCatalog::CreateFromData(
            wxScopedCharBuffer::CreateNonOwned(bytes_.data(), bytes_.size()), domain);
    }
    wxArrayString GetAvailableTranslations(const wxString& /*domain*/) const override {
        return wxArrayString(1, &language_);
    }

private:
    static std::string Catalogue() {
        const std::string entry = " vpt version is %d but software expects version %d";
        const std::string translated = " hat die Version %d statt %d";
        const std::string header = "Content-Type: text/plain; charset=UTF-8\n";
        const auto word = [](std::size_t value) {
            const auto number = static_cast<std::uint32_t>(value);
            return std::string(reinterpret_cast<const char*>(&number), sizeof number);
        };
        // Two entries: originals at 28, translations at 44, the texts from 60 on.
        std::string texts;
        std::array<std::string, 4> table;
        const std::array<std::string, 4> strings = {"", entry, header, translated};
        for (std::size_t i = 0; i < strings.size(); ++i) {
            table[i] = word(strings[i].size()) + word(60 + texts.size());
            texts += strings[i] + '\0';
        }
        std::string head;
        for (const std::size_t value : {0x950412DEUL, 0UL, 2UL, 28UL, 44UL, 0UL, 60UL})
            head += word(value);
        for (const std::string& row : table) head += row;
        return head + texts;
    }

    std::string bytes_ = Catalogue();
    wxString language_ = "de";
};

TEST(PcCorePointSet, RefusesOtherVersionsAndKeepsNothingLoaded) {
    const HostScene scene;
    ASSERT_TRUE(scene.result.success) << scene.result.message;
    const wxString name = toWx(scene.file);
    PcCorePointSet set;
    ASSERT_TRUE(set.loadProjectFromFile(scene.name()));
    const struct {
        unsigned long long version;
        const char* text;
    } cases[] = {{8, " vpt version is 8 but software expects version 9"},
                 {10, " vpt version is 10 but software expects version 9"},
                 {0, " vpt version is 0 but software expects version 9"},
                 // Its lower half is 9.
                 {(1ULL << 32U) + 9, " vpt version is 2147483647 but software expects version 9"}};
    for (const auto& c : cases) {
        scene.patch(0, c.version);
        EXPECT_EQ(loadError(set, scene.name()), name + c.text);
        EXPECT_EQ(set.projectManager(), nullptr);
        EXPECT_EQ(PcCorePointSet::fileVptVersion(scene.name()), c.version);
    }
    EXPECT_EQ(PcCorePointSet::currentVptVersion(), 9U);

    // The version is that of the tree file beside whatever file is named, as the message says.
    scene.patch(0, 8);
    const std::string scan = scene.folder.scan("scan.pts");
    EXPECT_EQ(loadError(set, toOd(scan)), toWx(scan) + cases[0].text);
    scene.patch(0, 9);
    EXPECT_TRUE(set.loadProjectFromFile(scene.name()));
}

TEST(PcCorePointSet, TranslatesTheMessageAboutVersions) {
    const HostScene scene;
    scene.patch(0, 8);
    PcCorePointSet set;
    ASSERT_EQ(wxTranslations::Get(), nullptr);
    wxTranslations::Set(new wxTranslations);
    wxTranslations::Get()->SetLanguage("de");
    wxTranslations::Get()->SetLoader(new OneEntryLoader);
    const bool added = wxTranslations::Get()->AddCatalog("host", wxLANGUAGE_ENGLISH_US);
    const std::optional<wxString> message = loadError(set, scene.name());
    wxTranslations::Set(nullptr);
    ASSERT_TRUE(added);
    EXPECT_EQ(message, toWx(scene.file) + " hat die Version 8 statt 9");
}

TEST(PcCorePointSet, StaysWithoutFileWhenThereIsNoneOrADamagedOne) {
    const HostScene scene;
    PcCorePointSet set;
    EXPECT_FALSE(set.loadProjectFromFile(toOd(scene.folder.scan("other.vpt"))));
    EXPECT_EQ(set.fileName(), toOd(scene.folder.scan("other.vpt")));
    EXPECT_FALSE(set.loadProjectFromFile(""));
    EXPECT_FALSE(set.loadProjectFromFile(toOd(scene.folder.work())));
    ASSERT_TRUE(set.loadProjectFromFile(scene.name()));
    EXPECT_FALSE(set.loadProjectFromFile(toOd(scene.folder.scan("other.vpt"))));
    EXPECT_EQ(set.getTotalNrPoints(), scene.points.size()) << "a missing file changes nothing";

    const std::string whole = readBytes(scene.file);
    const TreeFile tree(whole);
    for (const std::size_t length : {std::size_t{8}, std::size_t{60}, std::size_t{200},
                                     std::size_t{tree.pointDataPosition} - 1, whole.size() - 1}) {
        writeBytes(scene.file, whole.substr(0, length));
        EXPECT_FALSE(set.loadProjectFromFile(scene.name())) << length;
        EXPECT_EQ(set.getPointCoordinates(), nullptr) << length;
        EXPECT_EQ(viewFromAbove(set, scene.name()), 0U) << length;
    }
    writeBytes(scene.file, whole);
    EXPECT_TRUE(set.loadProjectFromFile(scene.name()));
}

TEST(PcCorePointSet, AnswersWithNothingBeforeALoad) {
    PcCorePointSet set;
    const OdGeMatrix3d identity;
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
    set.getOsnapPoints({}, {}, identity, identity, snaps);
    EXPECT_EQ(snaps.size(), 1U);
    EXPECT_EQ(set.getNrVisiblePoints(), 0U);
    EXPECT_EQ(set.getPointCoordinates(), nullptr);
    EXPECT_EQ(set.getPointColors(), nullptr);
    EXPECT_EQ(set.getPointSizes(), nullptr);
    EXPECT_EQ(set.getTotalNrPoints(), 0U);
    EXPECT_TRUE(set.GetNodePointSummary().empty());
    EXPECT_FALSE(set.resizePointBuffer(1000));

    EXPECT_FALSE(set.hasSameSections({}));
    EXPECT_FALSE(set.addSection("a", {}, {0, 0, 1}, true));
    EXPECT_FALSE(set.clearSections(true));
    EXPECT_FALSE(set.toggleEnableDisableSections());
    EXPECT_TRUE(set.addClipping({}));
    EXPECT_TRUE(set.removeLastClipping());
    EXPECT_TRUE(set.clearClippings());
}

TEST(PcCorePointSet, ShowsWhatWasPrepared) {
    const HostScene scene({CloudShape::Clusters, 3000, 3, 255});
    ASSERT_TRUE(scene.result.success) << scene.result.message;
    PcCorePointSet set;
    ASSERT_TRUE(set.loadProjectFromFile(scene.name()));
    EXPECT_EQ(set.getPointModelUnit(), 6U);
    EXPECT_EQ(set.getTotalNrPoints(), scene.points.size());
    EXPECT_EQ(set.stylizationType(), GiPc_Stylization_NONE);
    EXPECT_EQ(set.drawDensity(), GiPc_DrawDensity_Full);

    const TreeFile tree(readBytes(scene.file));
    const auto summary = set.GetNodePointSummary();
    ASSERT_EQ(summary.size(), tree.levels.size());
    for (std::size_t level = 0; level < summary.size(); ++level) {
        unsigned long long points = 0;
        for (const TreeNode& node : tree.levels[level]) points += node.pointCount;
        EXPECT_EQ(summary[level], std::pair(1ULL * tree.levels[level].size(), points));
    }

    EXPECT_EQ(viewFromAbove(set, scene.name()), scene.points.size());
    EXPECT_EQ(set.getNrVisiblePoints(), scene.points.size());
    EXPECT_EQ(sortedView(set), sortedPoints(scene, isAny));
    const OdCmEntityColor& colour = set.getPointColors()[0];
    const OdGePoint3d& first = set.getPointCoordinates()[0];
    EXPECT_EQ(set.getPointSizes()[0], 1.0);
    EXPECT_TRUE(std::any_of(scene.points.begin(), scene.points.end(), [&](const PointRecord& p) {
        return p.x == first.x && p.y == first.y && p.z == first.z &&
               colour == OdCmEntityColor(static_cast<OdUInt8>(p.red), static_cast<OdUInt8>(p.green),
                                         static_cast<OdUInt8>(p.blue));
    }));

    OdGeMatrix3d moved;
    moved[0][3] = 1000;
    EXPECT_EQ(viewFromAbove(set, scene.name(), moved), scene.points.size());
    EXPECT_GE(set.getPointCoordinates()[0].x, set.dataMin().x + 1000);
}

TEST(PcCorePointSet, ForwardsSettingsSectionsAndClippings) {
    const HostScene scene({CloudShape::Uniform, 2000, 5, 255});
    PcCorePointSet set;
    ASSERT_TRUE(set.loadProjectFromFile(scene.name()));
    const PcCoreProjectManager& manager = *set.projectManager();
    set.setDrawDensity(GiPc_DrawDensity_Low);
    set.setUseFlatView(true);
    set.setStylizationType(GiPc_Stylization_ELEVATION);
    set.setColorScheme(GiPc_ColorScheme_Hydro);
    set.setDrawGeometry(true);
    EXPECT_EQ(set.drawDensity(), GiPc_DrawDensity_Low);
    EXPECT_TRUE(set.useFlatView());
    EXPECT_EQ(set.stylizationType(), GiPc_Stylization_ELEVATION);
    EXPECT_EQ(set.colorScheme(), GiPc_ColorScheme_Hydro);
    EXPECT_TRUE(manager.drawGeometry);
    set.setDrawDensity(GiPc_DrawDensity_Full);
    set.setStylizationType(GiPc_Stylization_SCANCOLORS);

    const OdGePoint3d centre = set.dataMin() + (set.dataMax() - set.dataMin()) * 0.5;
    EXPECT_TRUE(set.addSection("cut", centre, {1, 0, 0}, false));
    EXPECT_FALSE(set.hasSameSections({}));
    viewFromAbove(set, scene.name());
    const auto isCut = [&](const PointRecord& p) { return p.x >= centre.x; };
    EXPECT_EQ(sortedView(set), sortedPoints(scene, isCut));
    EXPECT_LT(set.getNrVisiblePoints(), scene.points.size());
    EXPECT_TRUE(set.toggleEnableDisableSections());
    viewFromAbove(set, scene.name());
    EXPECT_EQ(sortedView(set), sortedPoints(scene, isAny));
    EXPECT_TRUE(set.clearSections(true));
    EXPECT_TRUE(set.hasSameSections({}));

    GiPcClipConfig clip;
    clip.type = 1;
    clip.flag2 = true;
    clip.vertices = {{-1e9, -1e9}, {1e9, -1e9}, {1e9, centre.y}, {-1e9, centre.y}};
    GiPcClipConfig nowhere = clip;
    nowhere.vertices = {{1e9, 1e9}, {2e9, 1e9}, {2e9, 2e9}};
    const auto isBelow = [&](const PointRecord& p) { return p.y < centre.y; };
    const auto isNone = [](const PointRecord& /*p*/) { return false; };
    EXPECT_TRUE(set.addClipping(clip));
    EXPECT_TRUE(set.addClipping(nowhere));
    viewFromAbove(set, scene.name());
    EXPECT_EQ(sortedView(set), sortedPoints(scene, isNone));
    EXPECT_TRUE(set.removeLastClipping());
    viewFromAbove(set, scene.name());
    EXPECT_EQ(sortedView(set), sortedPoints(scene, isBelow));
    EXPECT_TRUE(set.clearClippings());
    EXPECT_TRUE(set.removeLastClipping());
    viewFromAbove(set, scene.name());
    EXPECT_EQ(sortedView(set), sortedPoints(scene, isAny));
}

TEST(PcCorePointSet, SnapsToAPointOfTheView) {
    const HostScene scene;
    PcCorePointSet set;
    ASSERT_TRUE(set.loadProjectFromFile(scene.name()));
    viewFromAbove(set, scene.name());
    OdArray<OdGePoint3d> snaps;
    const OdGePoint3d shown = set.getPointCoordinates()[0];
    set.getOsnapPoints(shown, {}, {}, {}, snaps);
    ASSERT_EQ(snaps.size(), 1U);
    // The box of 5 pixels, each of them 2 diagonals / 500 wide.
    const double reach = 5 * 2 * (set.dataMax() - set.dataMin()).length() / 500;
    EXPECT_LE(std::abs(snaps[0].x - shown.x), reach);
    EXPECT_LE(std::abs(snaps[0].y - shown.y), reach);
    set.getOsnapPoints(set.dataMax() + OdGeVector3d(1e4, 1e4, 0), {}, {}, {}, snaps);
    EXPECT_EQ(snaps.size(), 1U);
}

TEST(PcCorePointSet, TakesTheHostsPointMaxAsItsBudget) {
    const HostScene scene;
    const PointMaxGuard pointMax(2000);
    PcCorePointSet set;
    ASSERT_TRUE(set.loadProjectFromFile(scene.name()));
    EXPECT_EQ(set.maxNrPointsInBuffer(), 5000000U);
    EXPECT_EQ(viewFromAbove(set, scene.name()), scene.points.size());
    EXPECT_EQ(set.maxNrPointsInBuffer(), 2000U);
    const OdGePoint3d* coordinates = set.getPointCoordinates();
    const double* sizes = set.getPointSizes();
    for (const int unchanged : {2000, 50, 0, -1, std::numeric_limits<int>::min()}) {
        pointMax.set(unchanged);
        EXPECT_EQ(viewFromAbove(set, scene.name()), scene.points.size()) << unchanged;
        EXPECT_EQ(set.maxNrPointsInBuffer(), 2000U) << unchanged;
        EXPECT_EQ(set.getPointCoordinates(), coordinates) << unchanged;
        EXPECT_EQ(set.getPointSizes(), sizes) << unchanged;
    }
    for (const int budget : {51, 400, 3000}) {
        pointMax.set(budget);
        const unsigned long long shown = viewFromAbove(set, scene.name());
        EXPECT_EQ(set.maxNrPointsInBuffer(), static_cast<unsigned long long>(budget));
        EXPECT_LT(shown, static_cast<unsigned long long>(budget));
        EXPECT_EQ(shown, set.getNrVisiblePoints());
    }
    EXPECT_EQ(set.getNrVisiblePoints(), scene.points.size());
    EXPECT_TRUE(set.resizePointBuffer(50));
    EXPECT_EQ(set.maxNrPointsInBuffer(), 3000U);
    EXPECT_TRUE(set.resizePointBuffer(60));
    EXPECT_EQ(set.maxNrPointsInBuffer(), 60U);
}

TEST(PcCorePointSet, ReadsBoundsWithoutLoading) {
    const HostScene scene;
    OdGePoint3d low(7, 7, 7);
    OdGePoint3d high(7, 7, 7);
    ASSERT_TRUE(PcCorePointSet::readDataMinMax(scene.name(), low, high));
    for (const PointRecord& p : scene.points) {
        EXPECT_TRUE(low.x <= p.x && low.y <= p.y && low.z <= p.z);
        EXPECT_TRUE(p.x <= high.x && p.y <= high.y && p.z <= high.z);
    }
    const TreeFile tree(readBytes(scene.file));
    const TreeNode& root = tree.levels[0][0];
    EXPECT_EQ(low, OdGePoint3d(root.boxMin[0], root.boxMin[1], root.boxMin[2]));
    EXPECT_EQ(high, OdGePoint3d(root.boxMax[0], root.boxMax[1], root.boxMax[2]));

    // A load copies the root's box, enlarged.
    PcCorePointSet set;
    EXPECT_GT(set.dataMin().x, set.dataMax().x);
    ASSERT_TRUE(set.loadProjectFromFile(scene.name()));
    EXPECT_NEAR((set.dataMax().x - set.dataMin().x) / (high.x - low.x), 1.05, 0.001);

    scene.patch(0, 8);
    EXPECT_FALSE(PcCorePointSet::readDataMinMax(scene.name(), low, high));
    EXPECT_EQ(low, OdGePoint3d());
    EXPECT_EQ(high, OdGePoint3d());
    EXPECT_FALSE(PcCorePointSet::readDataMinMax("/nowhere/scan.vpt", low, high));
    EXPECT_EQ(PcCorePointSet::fileVptVersion("/nowhere/scan.vpt"), 0U);
}

TEST(PcCorePointSet, GivesTheFailureOfAPreparation) {
    const TreePrepareResult result = PcCorePointSet::preparePointData({});
    EXPECT_FALSE(result.success);
    EXPECT_EQ(result.message, "Point cloud list of input files is empty...");
}

/// Where an operation stands in the virtual table: the C++ ABI of the host's compilers keeps it in
/// the member pointer as its distance in bytes, plus 1.
template <class Operation>
std::size_t slotOf(Operation operation) {
    std::size_t word = 0;
    std::memcpy(&word, &operation, sizeof word);
    return (word - 1) / sizeof(void*) + 1;
}

TEST(GiPointSetDefinition, HasItsOperationsWhereTheHostCallsThem) {
    using Set = GiPointSetDefinition;
    const std::size_t slots[] = {slotOf(&Set::getPointModelUnit),
                                 slotOf(&Set::hasViewGeometryChanged),
                                 slotOf(&Set::updateVisiblePoints),
                                 slotOf(&Set::getOsnapPoints),
                                 slotOf(&Set::getNrVisiblePoints),
                                 slotOf(&Set::getPointCoordinates),
                                 slotOf(&Set::getPointColors),
                                 slotOf(&Set::getPointSizes),
                                 slotOf(&Set::getTotalNrPoints),
                                 slotOf(&Set::drawDensity),
                                 slotOf(&Set::setDrawDensity),
                                 slotOf(&Set::useFlatView),
                                 slotOf(&Set::setUseFlatView),
                                 slotOf(&Set::maxNrPointsInBuffer),
                                 slotOf(&Set::setMaxNrPointsInBuffer),
                                 slotOf(&Set::stylizationType),
                                 slotOf(&Set::setStylizationType),
                                 slotOf(&Set::colorScheme),
                                 slotOf(&Set::setColorScheme),
                                 slotOf(&Set::hasSameSections),
                                 slotOf(&Set::addSection),
                                 slotOf(&Set::clearSections),
                                 slotOf(&Set::addClipping),
                                 slotOf(&Set::removeLastClipping),
                                 slotOf(&Set::clearClippings)};
    // The two destructors come first.
    for (std::size_t i = 0; i < std::size(slots); ++i) EXPECT_EQ(slots[i], i + 3);
}

}  // namespace

}  // namespace vpc::test
