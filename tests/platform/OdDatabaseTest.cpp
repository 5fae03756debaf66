#include <gtest/gtest.h>

#include "platform/OdDbUnits.h"
#include "platform/OdError.h"
#include "platform/PcDbPointCloud.h"
#include "platform/PcDbPointCloudDef.h"

namespace {

TEST(OddbGetUnitsConversion, IsExactWhereUnitsAreWholeMultiples) {
    using namespace OdDb;
    const struct {
        UnitsValue from;
        UnitsValue to;
        double factor;
    } cases[] = {{kUnitsMeters, kUnitsMillimeters, 1000},
                 {kUnitsFeet, kUnitsInches, 12},
                 {kUnitsYards, kUnitsFeet, 3},
                 {kUnitsMiles, kUnitsFeet, 5280},
                 {kUnitsInches, kUnitsMils, 1000},
                 {kUnitsInches, kUnitsMicroinches, 1e6},
                 {kUnitsInches, kUnitsCentimeters, 2.54},
                 {kUnitsGigameters, kUnitsAngstroms, 1e19},
                 {kUnitsKilometers, kUnitsHectometers, 10},
                 {kUnitsHectometers, kUnitsDekameters, 10},
                 {kUnitsMeters, kUnitsDecimeters, 10},
                 {kUnitsMicrons, kUnitsNanometers, 1000},
                 {kUnitsAstronomical, kUnitsMeters, 149597870700},
                 {kUnitsLightYears, kUnitsMeters, 9460730472580800},
                 {kUnitsMeters, kUnitsUndefined, 1},
                 {kUnitsUndefined, kUnitsMiles, 1},
                 {static_cast<UnitsValue>(21), kUnitsMiles, 1},
                 {kUnitsMiles, static_cast<UnitsValue>(-1), 1}};
    for (const auto& c : cases)
        EXPECT_EQ(oddbGetUnitsConversion(c.from, c.to), c.factor) << c.from << " to " << c.to;
    EXPECT_NEAR(oddbGetUnitsConversion(kUnitsParsecs, kUnitsLightYears), 3.261563777, 1e-9);
    for (int unit = 1; unit <= 20; ++unit) {
        const auto one = static_cast<UnitsValue>(unit);
        EXPECT_EQ(oddbGetUnitsConversion(one, one), 1) << unit;
    }
}

TEST(OdRxObject, IsCastToItsOwnClasses) {
    PcDbPointCloud cloud;
    OdRxObject* object = &cloud;
    EXPECT_EQ(PcDbPointCloud::cast(object), &cloud);
    EXPECT_EQ(OdDbPointCloudEx::cast(object), &cloud);
    EXPECT_EQ(OdDbEntity::cast(object), &cloud);
    EXPECT_EQ(PcDbPointCloudDef::cast(object), nullptr);
    EXPECT_EQ(PcDbPointCloud::cast(static_cast<OdRxObject*>(nullptr)), nullptr);
    EXPECT_EQ(object->isA()->name(), L"PcDbPointCloud");
    OdDbPointCloudEx plain;
    EXPECT_EQ(PcDbPointCloud::cast(&plain), nullptr);
}

TEST(OdDbPointCloudEx, ChangesOnlyWhileOpenForWriting) {
    PcDbPointCloud cloud;
    EXPECT_THROW(cloud.setScale(2), OdError);
    EXPECT_EQ(cloud.scale(), 1);
    cloud.upgradeOpen();
    cloud.setScale(2);
    EXPECT_EQ(cloud.scale(), 2);
}

}  // namespace
