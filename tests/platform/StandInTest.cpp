#include <gtest/gtest.h>

#include "platform/OdArray.h"
#include "platform/OdError.h"
#include "platform/PcDbPointCloud.h"
#include "platform/PcDbPointCloudDef.h"

namespace {

// What the tests of the library count on.

TEST(StandIn, CastsObjectsToTheirOwnClassesAndTheirBases) {
    PcDbPointCloud cloud;
    OdDbPointCloudEx plain;
    EXPECT_EQ(OdDbEntity::cast(static_cast<OdRxObject*>(&cloud)), &cloud);
    EXPECT_EQ(PcDbPointCloudDef::cast(&cloud), nullptr);
    EXPECT_EQ(PcDbPointCloud::cast(&plain), nullptr);
}

TEST(StandIn, RefusesChangesOfAnEntityThatIsNotOpenForWriting) {
    PcDbPointCloud cloud;
    EXPECT_THROW(cloud.setScale(2), OdError);
    EXPECT_EQ(cloud.scale(), 1);
}

TEST(StandIn, KeepsCopiesOfAnArrayApart) {
    const OdArray<int> copy = {1, 2, 3};
    OdArray<int> longer = copy, other = copy;
    longer.append(4);
    other[1] = 20;
    EXPECT_EQ(longer, (OdArray<int>{1, 2, 3, 4}));
    EXPECT_EQ(copy, (OdArray<int>{1, 2, 3}));
}

TEST(StandIn, DecodesTexts) {
    EXPECT_EQ(OdString("Gr\xC3\xB6\xC3\x9F\x65"), L"Gr\u00f6\u00dfe");
    EXPECT_EQ(OdString("\xE4.las"), L"\u00e4.las");
}

}  // namespace
