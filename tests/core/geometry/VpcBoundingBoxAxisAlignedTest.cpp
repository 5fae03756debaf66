#include "core/geometry/VpcBoundingBoxAxisAligned.h"

#include <cmath>

#include <gtest/gtest.h>

#include "support/ReaderTools.h"

namespace {

using Box = VpcBoundingBoxAxisAligned;
using vpc::test::joined;

std::string corners(const Box& box) {
    return vpc::test::describeBox(box.minPoint, box.maxPoint);
}

TEST(VpcBoundingBoxAxisAligned, DerivesItsMembersFromTheCorners) {
    // The axes from the shortest side to the longest, equal ones in their order.
    const std::pair<VpcVector3D, const char*> cases[] = {
        {{2, 2, 2}, "0 1 2"}, {{3, 2, 1}, "2 1 0"}, {{2, 1, 1}, "1 2 0"}, {{2, 2, 1}, "2 0 1"},
        {{1, 2, 1}, "0 2 1"}, {{1, 3, 2}, "0 2 1"}, {{3, 1, 2}, "1 2 0"}};
    for (const auto& [size, axes] : cases) {
        const VpcPoint3D low(1, 2, 3), high = low + size;
        const Box box(low, high);
        const auto& sides = box.sortedSides;
        EXPECT_EQ(joined(sides[0].first, sides[1].first, sides[2].first), axes);
        EXPECT_TRUE(sides[0].second <= sides[1].second && sides[1].second <= sides[2].second);
        EXPECT_TRUE(box.centre == low + size * 0.5) << axes;
        EXPECT_EQ(box.halfDiagonal, 0.5 * size.Magnitude());
        EXPECT_TRUE(box.cornerPoints == (std::vector<VpcPoint3D>{low, high}));
    }
}

TEST(VpcBoundingBoxAxisAligned, GrowsMergesAndScales) {
    Box box;
    EXPECT_EQ(corners(box), vpc::test::emptyExtent);
    const Box other(1, 2, 3, 4, 5, 6);
    EXPECT_EQ(corners(box.MergeWith(other)), "1 2 3 - 4 5 6");
    box.UpdateRegionOfInterest(VpcPoint3D(4, 9, 7));
    box.UpdateRegionOfInterest(VpcPoint3D(5, 6, 7));
    EXPECT_EQ(corners(box), "4 6 7 - 5 9 7");
    EXPECT_EQ(corners(box.MergeWith(other)), "1 2 3 - 5 9 7");
    EXPECT_EQ(joined(box.sideX, box.sideY, box.sideZ), "1 3 0");

    box.Update(0, 0, 0, 2, 2, 2);
    for (const double factor : {0.0, -1.0, std::nan("")}) EXPECT_FALSE(box.Scale(factor));
    EXPECT_TRUE(box.Scale(2));
    EXPECT_EQ(corners(box), "-1 -1 -1 - 3 3 3");
    box.AddMargin(-0.5);
    EXPECT_EQ(corners(box), "-0.5 -0.5 -0.5 - 2.5 2.5 2.5");
    box.SetNewBoundaries(Box(4, 4, 4, 1, 1, 1));
    EXPECT_EQ(box.sideX, -3) << "corners are taken as given";
    std::string vertices;
    for (const VpcPoint3D& v : Box(0, 2, 4, 1, 3, 5).GetVertexList())
        vertices += joined(v.x, v.y, v.z, "");
    EXPECT_EQ(vertices, "0 2 4 0 3 4 1 3 4 1 2 4 0 2 5 0 3 5 1 3 5 1 2 5 ");
}

TEST(VpcBoundingBoxAxisAligned, ContainsPoints) {
    const Box unit(0, 0, 0, 1, 1, 1);
    const std::tuple<VpcPoint3D, double, bool, bool> cases[] = {
        {{0, 0, 0}, 0, true, true},           {{1, 0.5, 0.5}, 0, false, true},
        {{0.5, 1, 0.5}, 0, false, true},      {{0.5, 0.5, 1}, 0, false, true},
        {{1, 0.5, 0.5}, 1e-9, true, true},    {{1.0000001, 0, 0}, 1, true, false},
        {{0.5, -0.5, 0.5}, 0.5, true, false}, {{std::nan(""), 0, 0}, 1, false, false}};
    for (const auto& [p, tolerance, halfOpen, closed] : cases) {
        EXPECT_EQ(unit.ContainsPointIntervalClosedMinOpenMax(p, tolerance), halfOpen) << p;
        EXPECT_EQ(unit.ContainsPointIntervalClosed(p, tolerance), closed) << p;
    }
}

}  // namespace
