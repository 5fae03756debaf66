#include "core/geometry/VpcBoundingBoxAxisAligned.h"

#include <cmath>

#include <gtest/gtest.h>

namespace {

using Box = VpcBoundingBoxAxisAligned;
using Sides = std::vector<std::pair<int, double>>;

void expectCorners(const Box& box, const VpcPoint3D& min, const VpcPoint3D& max) {
    EXPECT_EQ(box.minPoint.ToString(true), min.ToString(true));
    EXPECT_EQ(box.maxPoint.ToString(true), max.ToString(true));
}

TEST(VpcBoundingBoxAxisAligned, UpdateDerivesEverything) {
    Box box(VpcPoint3D(9, 9, 9), VpcPoint3D(9, 9, 9));
    EXPECT_TRUE(box.Update(1, 2, 3, 4, 3, 5));
    ASSERT_EQ(box.cornerPoints.size(), 2U);
    EXPECT_TRUE(box.cornerPoints[0] == VpcPoint3D(1, 2, 3));
    EXPECT_TRUE(box.cornerPoints[1] == VpcPoint3D(4, 3, 5));
    EXPECT_TRUE(box.centre == VpcPoint3D(2.5, 2.5, 4));
    EXPECT_EQ(box.halfDiagonal, 0.5 * std::sqrt(14));
    EXPECT_EQ(box.sortedSides, (Sides{{1, 1}, {2, 2}, {0, 3}}));
    EXPECT_EQ(box.minPoint.scannerDistance, 1.0) << "attributes keep their defaults";
}

TEST(VpcBoundingBoxAxisAligned, SortsSidesWithEqualOnesInTheAxesOrder) {
    const struct {
        double x, y, z;
        Sides sorted;
    } cases[] = {
        {2, 2, 2, {{0, 2}, {1, 2}, {2, 2}}}, {3, 2, 1, {{2, 1}, {1, 2}, {0, 3}}},
        {2, 1, 1, {{1, 1}, {2, 1}, {0, 2}}}, {2, 2, 1, {{2, 1}, {0, 2}, {1, 2}}},
        {1, 2, 1, {{0, 1}, {2, 1}, {1, 2}}}, {2, 3, 1, {{2, 1}, {0, 2}, {1, 3}}},
        {1, 3, 2, {{0, 1}, {2, 2}, {1, 3}}}, {0, 0, 0, {{0, 0}, {1, 0}, {2, 0}}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Box(0, 0, 0, c.x, c.y, c.z).sortedSides, c.sorted) << c.x << c.y << c.z;
}

TEST(VpcBoundingBoxAxisAligned, TheEmptyBoxGrows) {
    Box box;
    EXPECT_EQ(box.minPoint.x, 1e65);
    EXPECT_EQ(box.maxPoint.z, -1e65);
    EXPECT_TRUE(box.cornerPoints.empty() && box.sortedSides.empty());
    EXPECT_TRUE(box.centre == VpcPoint3D());
    const Box other(1, 2, 3, 4, 5, 6);
    expectCorners(box.MergeWith(other), VpcPoint3D(1, 2, 3), VpcPoint3D(4, 5, 6));
    EXPECT_TRUE(box.UpdateRegionOfInterest(VpcPoint3D(5, 6, 7)));
    expectCorners(box, VpcPoint3D(5, 6, 7), VpcPoint3D(5, 6, 7));
    EXPECT_EQ(box.sideX + box.sideY + box.sideZ + box.halfDiagonal, 0);
    box.UpdateRegionOfInterest(VpcPoint3D(4, 9, 7));
    expectCorners(box, VpcPoint3D(4, 6, 7), VpcPoint3D(5, 9, 7));
    expectCorners(box.MergeWith(other), VpcPoint3D(1, 2, 3), VpcPoint3D(5, 9, 7));
    EXPECT_EQ(box.sideY, 3) << "merging leaves both boxes alone";
}

TEST(VpcBoundingBoxAxisAligned, ScalesAboutItsCentre) {
    Box box(0, 0, 0, 2, 2, 2);
    for (const double factor : {0.0, -1.0, std::nan("")}) EXPECT_FALSE(box.Scale(factor));
    expectCorners(box, VpcPoint3D(0, 0, 0), VpcPoint3D(2, 2, 2));
    EXPECT_TRUE(box.Scale(2));
    expectCorners(box, VpcPoint3D(-1, -1, -1), VpcPoint3D(3, 3, 3));
    EXPECT_TRUE(box.AddMargin(-0.5));
    expectCorners(box, VpcPoint3D(-0.5, -0.5, -0.5), VpcPoint3D(2.5, 2.5, 2.5));
    EXPECT_EQ(box.sideZ, 3);
    EXPECT_TRUE(box.SetNewBoundaries(Box(4, 4, 4, 1, 1, 1)));
    EXPECT_EQ(box.sideX, -3) << "corners are taken as given";
}

TEST(VpcBoundingBoxAxisAligned, ContainsPoints) {
    const Box unit(0, 0, 0, 1, 1, 1);
    const struct {
        VpcPoint3D p;
        double tol;
        bool halfOpen;
        bool closed;
    } cases[] = {
        {{0.5, 0.5, 0.5}, 0, true, true},       {{0, 0, 0}, 0, true, true},
        {{1, 0.5, 0.5}, 0, false, true},        {{0.5, 1, 0.5}, 0, false, true},
        {{0.5, 0.5, 1}, 0, false, true},        {{1, 0.5, 0.5}, 1e-9, true, true},
        {{1.0000001, 0, 0}, 1, true, false},    {{0.5, -0.5, 0.5}, 0.5, true, false},
        {{0.5, 0.5, -0.51}, 0.5, false, false}, {{std::nan(""), 0, 0}, 1, false, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(unit.ContainsPointIntervalClosedMinOpenMax(c.p, c.tol), c.halfOpen)
            << c.p << ' ' << c.tol;
        EXPECT_EQ(unit.ContainsPointIntervalClosed(c.p, c.tol), c.closed) << c.p << ' ' << c.tol;
    }
}

TEST(VpcBoundingBoxAxisAligned, IntersectsRays) {
    const Box unit(0, 0, 0, 1, 1, 1);
    const struct {
        VpcPoint3D origin;
        VpcVector3D direction;
        bool hit;
        double t;
    } cases[] = {
        {{-1, 0.5, 0.5}, {1, 0, 0}, true, 1},
        {{-1, 0.5, 0.5}, {0.5, 0, 0}, true, 2},
        {{2, 0.5, 0.5}, {1, 0, 0}, false, -1},
        {{2, 0.5, 0.5}, {-1, 0, 0}, true, 1},
        {{0.5, 0.5, 0.25}, {0, 0, 1}, true, -0.25},
        {{-1, -1, -1}, {1, 1, 1}, true, 1},
        // Past the box: it leaves the y slab at 1, before it enters the x slab at 2.
        {{-2, 0, 0.5}, {1, 1, 0}, false, 1},
    };
    for (const auto& c : cases) {
        double t = 99;
        EXPECT_EQ(unit.Intersect(VpcLine3D(c.origin, c.direction), t), c.hit) << c.origin;
        EXPECT_EQ(t, c.t) << c.origin;
    }
}

TEST(VpcBoundingBoxAxisAligned, VerticesWalkTheLowerFaceThenTheUpper) {
    const std::vector<VpcPoint3D> v = Box(0, 2, 4, 1, 3, 5).GetVertexList();
    const double expected[8][3] = {{0, 2, 4}, {0, 3, 4}, {1, 3, 4}, {1, 2, 4},
                                   {0, 2, 5}, {0, 3, 5}, {1, 3, 5}, {1, 2, 5}};
    ASSERT_EQ(v.size(), 8U);
    for (std::size_t i = 0; i < 8; ++i)
        EXPECT_TRUE(v[i] == VpcPoint3D(expected[i][0], expected[i][1], expected[i][2])) << i;
    EXPECT_EQ(v[3].scannerDistance, -1.0);
    EXPECT_TRUE(sortProjPoints(VpcPoint3D(1, 9, 0), VpcPoint3D(2, 0, 0)));
    EXPECT_TRUE(sortProjPoints(VpcPoint3D(1, 0, 9), VpcPoint3D(1, 1, 0)));
    EXPECT_FALSE(sortProjPoints(VpcPoint3D(1, 1, 0), VpcPoint3D(1, 1, 9)));
}

}  // namespace
