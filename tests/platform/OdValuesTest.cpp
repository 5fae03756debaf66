#include <cstring>
#include <numeric>

#include <gtest/gtest.h>

#include "platform/OdAlloc.h"
#include "platform/OdArray.h"
#include "platform/OdCmEntityColor.h"
#include "platform/OdSystemVariables.h"

namespace {

TEST(OdArray, SharesItsBufferUntilACopyIsChanged) {
    OdArray<int> first = {1, 2, 3};
    const OdArray<int>& readOnly = first;
    const OdArray<int> copy = first;
    EXPECT_EQ(readOnly.asArrayPtr(), copy.asArrayPtr());
    first[1] = 20;
    EXPECT_NE(readOnly.asArrayPtr(), copy.asArrayPtr());
    EXPECT_EQ(copy, OdArray<int>({1, 2, 3}));
    EXPECT_EQ(first, OdArray<int>({1, 20, 3}));

    // Whatever changes an array leaves its copies alone.
    OdArray<int> changed[5] = {copy, copy, copy, copy, copy};
    changed[0].append(4);
    changed[1].removeLast();
    changed[2].clear();
    for (int& item : changed[3]) item = 0;
    changed[4].asArrayPtr()[0] = 9;
    EXPECT_EQ(changed[0], OdArray<int>({1, 2, 3, 4}));
    EXPECT_EQ(changed[1], OdArray<int>({1, 2}));
    EXPECT_TRUE(changed[2].isEmpty());
    EXPECT_EQ(changed[3], OdArray<int>({0, 0, 0}));
    EXPECT_EQ(changed[4], OdArray<int>({9, 2, 3}));
    EXPECT_EQ(copy, OdArray<int>({1, 2, 3}));
}

TEST(OdArray, IsWalkedAsAnyContainer) {
    OdArray<int> array;
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(array.begin(), array.end());
    EXPECT_EQ(array, OdArray<int>(OdArray<int>{}));
    for (int i = 1; i <= 100; ++i) array.push_back(i);
    EXPECT_EQ(array.size(), 100U);
    EXPECT_EQ(array.last(), 100);
    EXPECT_EQ(std::accumulate(array.begin(), array.end(), 0), 5050);
    EXPECT_NE(array, OdArray<int>());
}

TEST(OdCmEntityColor, PacksMethodRedGreenAndBlue) {
    static_assert(sizeof(OdCmEntityColor) == 4);
    OdCmEntityColor colour;
    EXPECT_EQ(colour.color(), 0xC2000000U);
    colour.setRGB(0x12, 0x34, 0xFF);
    EXPECT_EQ(colour.color(), 0xC21234FFU);
    colour.setColorMethod(OdCmEntityColor::kByACI);
    EXPECT_EQ(colour.color(), 0xC31234FFU);
    EXPECT_EQ(colour.colorMethod(), OdCmEntityColor::kByACI);
    colour.setColor(0xC2FE0180U);
    EXPECT_EQ(colour.red(), 0xFE);
    EXPECT_EQ(colour.green(), 0x01);
    EXPECT_EQ(colour.blue(), 0x80);
    colour.setGreen(0xAA);
    EXPECT_EQ(colour, OdCmEntityColor(0xFE, 0xAA, 0x80));
}

TEST(OdSystemVariables, KeepWholeNumbersByName) {
    OdSystemVariables variables;
    EXPECT_EQ(variables.getInt("POINTCLOUDPOINTMAX"), 5000000);
    EXPECT_EQ(variables.getInt("NOSUCHVARIABLE"), 0);
    variables.setInt("POINTCLOUDPOINTMAX", -7);
    EXPECT_EQ(variables.getInt("POINTCLOUDPOINTMAX"), -7);
    EXPECT_EQ(&odSystemVariables(), &odSystemVariables());
}

TEST(OdAlloc, GivesMemoryAndTakesItBack) {
    void* memory = odrxAlloc(1000);
    ASSERT_NE(memory, nullptr);
    std::memset(memory, 0xA5, 1000);
    odrxFree(memory);
    odrxFree(nullptr);
}

}  // namespace
