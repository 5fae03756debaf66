#include "host/OPMPointCloudProperties.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/OdDbDatabase.h"
#include "platform/OdError.h"
#include "platform/OdOPMExtensionManager.h"
#include "platform/PcDbPointCloud.h"
#include "platform/PcDbPointCloudDef.h"
#include "support/ViewFixture.h"
#include "tree/file/PointTreeLayout.h"

namespace vpc::test {

namespace {

const OPMVariant none;

OPMVariant text(const wchar_t* value) {
    return OPMVariant(OdString(value));
}

OPMVariant number(OdInt64 value) {
    return OPMVariant(value);
}

/// The palette's extension and an entity in a drawing.
class OPMPointCloudPropertiesTest : public ViewTest {
protected:
    OPMPointCloudPropertiesTest() {
        cloud.setDatabase(&drawing);
        cloud.upgradeOpen();
        cloud.setPointCloudDefExId(OdDbObjectId(&definition));
        cloud.setPointCloudName(L"Nave");
        cloud.setLocation({1, 2, 3});
        cloud.setRotation(0.5);
        cloud.setScale(4);
        cloud.downgradeOpen();
        definition.setActiveFileName(L"/scans/nave.vpt");
    }

    /// A property's value; kNull where there is none.
    OPMVariant value(int id) { return valueOf(&cloud, id); }
    OPMVariant valueOf(const OdDbEntity* entity, int id) {
        const OPMVariant untouched = text(L"untouched");
        OPMVariant value = untouched;
        const bool found = palette.getPropertyValue(entity, id, L"", value);
        EXPECT_NE(found, value == untouched);
        return found ? value : none;
    }
    bool edit(int id, const OPMVariant& value) {
        const bool done = palette.setPropertyValue(&cloud, id, L"", value);
        EXPECT_FALSE(cloud.isWriteEnabled());
        return done;
    }

    OPMPointCloudProperties palette;
    OdDbDatabase drawing;
    PcDbPointCloudDef definition;
    PcDbPointCloud cloud;
};

TEST_F(OPMPointCloudPropertiesTest, ListsItsPropertiesInOrder) {
    OdArray<OPMPropertyEntry> properties{OPMPropertyEntry{}};
    palette.getPropertyMap(PcDbPointCloud::desc(), properties);
    std::wstring listed;
    for (const OPMPropertyEntry& p : properties) {
        listed += std::to_wstring(p.id) + L' ' + p.name.c_str() + L' ' + p.category.c_str() + L' ' +
                  std::to_wstring(p.type);
        for (const OdString& text : p.predefinedStrings)
            listed += std::wstring(L",") + text.c_str();
        listed += L"; ";
        EXPECT_TRUE(p.sharedValue == -1 && p.values.empty()) << p.id;
    }
    EXPECT_EQ(listed,
              L"0   0; 3 Stylization 3D Visualization 60,Scan colors,Intensity,Elevation; "
              L"4 Color scheme 3D Visualization "
              L"60,Scan,Spectrum,Earth,Hydro,Gray,Reds,Greens,Blues; "
              L"5 Insertion X Geometry 4; 6 Insertion Y Geometry 4; 7 Insertion Z Geometry 4; "
              L"8 Rotation Geometry 5; 9 Scale Geometry 6; 2 Name Misc 9; 10 Saved Path Misc 50; "
              L"11 Cropped Misc 2; 12 Locked Misc 2; 13 Geolocate Misc 2; 14 Segmentation Misc 2; "
              L"15 Unit Misc 9; 16 Unit factor Misc 4; 17 TotalNrPoints Misc 1; "
              L"18 VisibleNrPoints Misc 1; ");
}

TEST_F(OPMPointCloudPropertiesTest, ReadsTheEntity) {
    const OPMVariant expected[] = {none,
                                   text(L"Point Cloud Entity"),
                                   text(L"Nave"),
                                   number(0),
                                   number(0),
                                   OPMVariant(1.0),
                                   OPMVariant(2.0),
                                   OPMVariant(3.0),
                                   OPMVariant(0.5),
                                   OPMVariant(4.0),
                                   text(L"/scans/nave.vpt"),
                                   OPMVariant(true),
                                   OPMVariant(false),
                                   OPMVariant(false),
                                   OPMVariant(false)};
    for (int id = 0; id < 15; ++id) EXPECT_EQ(value(id), expected[id]) << id;
    for (const int id : {-1, 19, 1000}) EXPECT_EQ(value(id), none) << id;
}

TEST_F(OPMPointCloudPropertiesTest, EditsAreReadBack) {
    const struct {
        int id;
        OPMVariant value;
        OPMVariant readBack;
    } edits[] = {
        {2, text(L"Chor \u6771"), text(L"Chor \u6771")},
        {3, text(L"Intensity"), number(1)},
        {3, text(L"Elevation"), number(2)},
        {3, text(L"elevation"), number(0)},
        {4, text(L"Spectrum"), number(1)},
        {4, text(L"Earth"), number(2)},
        {4, text(L"Hydro"), number(3)},
        {4, text(L"Gray"), number(4)},
        {4, text(L"Reds"), number(5)},
        {4, text(L"Greens"), number(6)},
        {4, text(L"Scan"), number(0)},
        {4, text(L"Blues"), number(7)},
        {5, OPMVariant(-10.5), OPMVariant(-10.5)},
        {6, OPMVariant(20.5), OPMVariant(20.5)},
        {7, OPMVariant(1e300), OPMVariant(1e300)},
        {8, OPMVariant(3.0), OPMVariant(3.0)},
        {9, OPMVariant(0.25), OPMVariant(0.25)},
        {11, OPMVariant(false), OPMVariant(false)},
        {12, OPMVariant(true), OPMVariant(true)},
    };
    for (const auto& e : edits) {
        EXPECT_TRUE(edit(e.id, e.value)) << e.id;
        EXPECT_EQ(value(e.id), e.readBack) << e.id;
    }
    EXPECT_EQ(cloud.location(), OdGePoint3d(-10.5, 20.5, 1e300));
    EXPECT_EQ(cloud.stylizationType(), 1);
    EXPECT_EQ(cloud.getCurrentColorScheme(), L"9B45EA40-176A-46B5-9470-1FA6A7880EE3");

    edit(3, text(L"Intensity"));
    EXPECT_EQ(cloud.stylizationType(), 5);
    edit(3, text(L"Elevation"));
    EXPECT_EQ(cloud.stylizationType(), 4);
    for (const wchar_t* name : {L"Scan", L"blues", L""}) {
        EXPECT_TRUE(edit(4, text(L"Blues")) && edit(4, text(name)));
        EXPECT_EQ(cloud.getCurrentColorScheme(), L"") << name;
    }
}

TEST_F(OPMPointCloudPropertiesTest, RefusesWhatCannotBeSet) {
    const OPMVariant values[] = {none, OPMVariant(true), number(7), OPMVariant(7.0),
                                 text(L"Blues")};
    const auto all = [this] {
        std::vector<OPMVariant> now;
        for (int id = 1; id <= 18; ++id) now.push_back(value(id));
        return now;
    };
    const std::vector<OPMVariant> before = all();
    for (int id = -1; id <= 20; ++id) {
        const bool isText = id >= 2 && id <= 4;
        const bool isNumber = id >= 5 && id <= 9;
        const bool isTruth = id == 11 || id == 12;
        for (const OPMVariant& wrong : values) {
            const OPMVariant::Type type = wrong.varType();
            if ((isText && type == OPMVariant::kString) ||
                (isNumber && type == OPMVariant::kDouble) || (isTruth && type == OPMVariant::kBool))
                continue;
            EXPECT_FALSE(edit(id, wrong)) << id << " by a value of type " << type;
        }
    }
    EXPECT_EQ(all(), before);
    EXPECT_FALSE(palette.setPropertyValue(nullptr, 12, L"", OPMVariant(true)));
}

TEST_F(OPMPointCloudPropertiesTest, KnowsNothingOfOtherEntities) {
    OdDbEntity line;
    for (const OdDbEntity* entity : {static_cast<OdDbEntity*>(nullptr), &line})
        for (int id = 1; id <= 18; ++id)
            EXPECT_EQ(valueOf(entity, id), id == 13 || id == 14 ? OPMVariant(false) : none) << id;
    EXPECT_FALSE(palette.setPropertyValue(&line, 2, L"", text(L"Nave")));

    PcDbPointCloud bare;
    for (const int id : {10, 15, 16, 17, 18}) EXPECT_EQ(valueOf(&bare, id), none) << id;
}

TEST_F(OPMPointCloudPropertiesTest, TellsOfTheLoadedPoints) {
    load(1000);
    definition.setPointSet(&set);
    drawing.setINSUNITS(OdDb::kUnitsMillimeters);
    const auto shown = update(overview);
    EXPECT_EQ(value(15), text(L"Meters"));
    EXPECT_EQ(value(16), OPMVariant(1000.0));
    EXPECT_EQ(value(17), number(1000));
    EXPECT_EQ(value(18), number(static_cast<OdInt64>(shown)));
    cloud.setDatabase(nullptr);
    EXPECT_EQ(value(16), none);

    cloud.setDatabase(&drawing);
    patch(PointTreeLayout::hostValuePosition, 21);
    ASSERT_TRUE(set.loadProjectFromFile(name()));
    EXPECT_EQ(value(15), text(L"Undefined"));
    EXPECT_EQ(value(16), OPMVariant(1.0));
}

TEST(OdOPMExtensionManager, KnowsThePaletteWhileItLives) {
    const auto& extensions = odOPMExtensionManager()->extensions();
    const std::size_t before = extensions.size();
    {
        const OPMPointCloudProperties palette;
        EXPECT_THAT(extensions, testing::Contains(&palette));
    }
    EXPECT_EQ(extensions.size(), before);
}

}  // namespace

}  // namespace vpc::test
