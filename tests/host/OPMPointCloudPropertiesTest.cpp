#include "host/OPMPointCloudProperties.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/OdDbDatabase.h"
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
        EXPECT_TRUE(p.sharedValue == -1 && p.values.isEmpty()) << p.id;
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
    EXPECT_EQ(value(1), text(L"Point Cloud Entity"));
    EXPECT_EQ(value(2), text(L"Nave"));
    for (const int choice : {3, 4}) EXPECT_EQ(value(choice), number(0));
    int id = 5;
    for (const double expected : {1.0, 2.0, 3.0, 0.5, 4.0})
        EXPECT_EQ(value(id++), OPMVariant(expected)) << id;
    EXPECT_EQ(value(10), text(L"/scans/nave.vpt"));
    for (int flag = 11; flag < 15; ++flag) EXPECT_EQ(value(flag), OPMVariant(flag == 11)) << flag;
    for (const int other : {-1, 0, 19, 1000}) EXPECT_EQ(value(other), none) << other;
}

TEST_F(OPMPointCloudPropertiesTest, EditsAreReadBack) {
    const std::pair<int, OPMVariant> edits[] = {{2, text(L"Chor \u6771")}, {5, OPMVariant(-10.5)},
                                                {6, OPMVariant(20.5)},     {7, OPMVariant(1e300)},
                                                {8, OPMVariant(3.0)},      {9, OPMVariant(0.25)},
                                                {11, OPMVariant(false)},   {12, OPMVariant(true)}};
    for (const auto& [id, edited] : edits) EXPECT_TRUE(edit(id, edited)) << id;
    for (const auto& [id, edited] : edits) EXPECT_EQ(value(id), edited) << id;
}

TEST_F(OPMPointCloudPropertiesTest, KeepsChoicesAsTheEntityCountsThem) {
    const struct {
        const wchar_t* name;
        int kept;
        OdInt64 place;
    } stylizations[] = {
        {L"Intensity", 5, 1}, {L"elevation", 1, 0}, {L"Elevation", 4, 2}, {L"Scan colors", 1, 0}};
    for (const auto& stylization : stylizations) {
        EXPECT_TRUE(edit(3, text(stylization.name)));
        EXPECT_EQ(cloud.stylizationType(), stylization.kept) << stylization.name;
        EXPECT_EQ(value(3), number(stylization.place)) << stylization.name;
    }
    const struct {
        const wchar_t* name;
        const wchar_t* guid;
        OdInt64 place;
    } schemes[] = {{L"Spectrum", L"C0A3838B-81E3-4506-B908-13ECF523DB68", 1},
                   {L"Earth", L"6DFAB669-B096-4842-9F90-F23CBDD9E410", 2},
                   {L"Scan", L"", 0},
                   {L"Hydro", L"46B3A5C6-4029-4D50-90D3-C49ADB0A2B45", 3},
                   {L"Gray", L"655FCCB9-2DB2-40BC-86BB-A513D3DF3FEE", 4},
                   {L"gray", L"", 0},
                   {L"Reds", L"E247D320-B4DE-471F-8E5F-B848819BF6F6", 5},
                   {L"Greens", L"B5E88F37-A921-45DF-9987-B979CE516EF3", 6},
                   {L"Blues", L"9B45EA40-176A-46B5-9470-1FA6A7880EE3", 7}};
    for (const auto& scheme : schemes) {
        EXPECT_TRUE(edit(4, text(scheme.name)));
        EXPECT_EQ(cloud.getCurrentColorScheme(), scheme.guid) << scheme.name;
        EXPECT_EQ(value(4), number(scheme.place)) << scheme.name;
    }
}

TEST_F(OPMPointCloudPropertiesTest, LeavesTheRestToTheHost) {
    OdString name;
    EXPECT_TRUE(palette.getApplicationName(name));
    EXPECT_EQ(name, L"POINTCLOUD");
    for (const wchar_t* given : {L"", L"given"}) {
        name = given;
        bool flag = true;
        OdArray<OdString> strings{name};
        std::map<OdString, OdString> names{{name, name}};
        EXPECT_EQ(palette.getObjectName(&cloud, name), !name.isEmpty());
        EXPECT_EQ(palette.getPropertyName(&cloud, 2, L"", name), !name.isEmpty());
        EXPECT_TRUE(palette.getPropertyDescription(&cloud, 2, L"", name));
        EXPECT_FALSE(palette.getCategoryName(L"Misc", name) || palette.allowPropertyPreview(2) ||
                     palette.getPropertyEnabled(&cloud, 2, L"", flag) ||
                     palette.getPropertyReadOnly(&cloud, 2, L"", flag) ||
                     palette.getPredefinedStrings(&cloud, 3, L"", strings) ||
                     palette.allEntityNames(names));
        EXPECT_EQ(palette.getPropertyHidden(2), 1);
        EXPECT_EQ(name, given);
        EXPECT_TRUE(flag && strings.size() == 1 && names.size() == 1);
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
        const int right = id >= 2 && id <= 4     ? OPMVariant::kString
                          : id >= 5 && id <= 9   ? OPMVariant::kDouble
                          : id == 11 || id == 12 ? OPMVariant::kBool
                                                 : -1;
        for (const OPMVariant& wrong : values) {
            if (wrong.varType() == right) continue;
            EXPECT_FALSE(edit(id, wrong)) << id << " by a value of type " << wrong.varType();
        }
    }
    EXPECT_EQ(all(), before);
    EXPECT_FALSE(palette.setPropertyValue(nullptr, 12, L"", OPMVariant(true)));
}

TEST_F(OPMPointCloudPropertiesTest, TellsOfOtherEntitiesAndDefinitionsWhatTheyHave) {
    OdDbEntity line;
    for (const OdDbEntity* entity : {static_cast<OdDbEntity*>(nullptr), &line})
        for (int id = 1; id <= 18; ++id)
            EXPECT_EQ(valueOf(entity, id), id == 13 || id == 14 ? OPMVariant(false) : none) << id;
    EXPECT_FALSE(palette.setPropertyValue(&line, 2, L"", text(L"Nave")));

    PcDbPointCloud bare;
    for (const int id : {10, 15, 16, 17, 18}) EXPECT_EQ(valueOf(&bare, id), none) << id;

    OdDbPointCloudDefEx otherDefinition;
    otherDefinition.setActiveFileName(L"/scans/other.vpt");
    bare.upgradeOpen();
    bare.setPointCloudDefExId(OdDbObjectId(&otherDefinition));
    EXPECT_EQ(valueOf(&bare, 10), text(L"/scans/other.vpt"));
    for (const int id : {15, 16, 17, 18}) EXPECT_EQ(valueOf(&bare, id), none) << id;
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
    const wchar_t* const units[] = {L"Undefined",   L"Inches",      L"Feet",         L"Miles",
                                    L"Millimeters", L"Centimeters", L"Meters",       L"Kilometers",
                                    L"Microinches", L"Mils",        L"Yards",        L"Angstroms",
                                    L"Nanometers",  L"Microns",     L"Decimeters",   L"Dekameters",
                                    L"Hectometers", L"Gigameters",  L"Astronomical", L"LightYears",
                                    L"Parsecs",     L"Undefined"};
    Word code = 0;
    for (const wchar_t* unit : units) {
        patch(PointTreeLayout::hostValuePosition, code++);
        ASSERT_TRUE(set.loadProjectFromFile(name()));
        EXPECT_EQ(value(15), text(unit));
    }
    EXPECT_EQ(value(16), OPMVariant(1.0)) << "no unit has the last code";
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
