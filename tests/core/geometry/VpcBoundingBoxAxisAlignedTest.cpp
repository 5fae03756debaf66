#include "core/geometry/VpcBoundingBoxAxisAligned.h"

#include <cmath>

#include <gtest/gtest.h>

#include "support/ReaderTools.h"

namespace {

using Box = VpcBoundingBoxAxisAligned;
using vpc::test::joined;

std::string corners(const Box& box) {
    const VpcPoint3D &a = box.minPoint, &b = box.maxPoint;
    return joined(a.x, a.y, a.z, '-', b.x, b.y, b.z);
}

TEST(VpcBoundingBoxAxisAligned, DerivesItsMembersFromTheCorners) {
    // The axes from the shortest side to the longest, equal ones in their order.
    const struct {
        double x, y, z;
        const char* axes;
    } cases[] = {{2, 2, 2, "0 1 2"}, {3, 2, 1, "2 1 0"}, {2, 1, 1, "1 2 0"},
                 {2, 2, 1, "2 0 1"}, {1, 2, 1, "0 2 1"}, {2, 3, 1, "2 0 1"},
                 {1, 3, 2, "0 2 1"}, {0, 0, 0, "0 1 2"}, {3, 1, 2, "1 2 0"}};
    for (const auto& c : cases) {
        Box box(VpcPoint3D(9, 9, 9), VpcPoint3D(9, 9, 9));
        box.Update(1, 2, 3, 1 + c.x, 2 + c.y, 3 + c.z);
        const auto& sides = box.sortedSides;
        EXPECT_EQ(joined(sides[0].first, sides[1].first, sides[2].first), c.axes);
        for (const auto& [axis, length] : sides)
            EXPECT_EQ(length, axis == 0 ? c.x : axis == 1 ? c.y : c.z) << c.axes;
        EXPECT_TRUE(box.centre == VpcPoint3D(1 + c.x / 2, 2 + c.y / 2, 3 + c.z / 2)) << c.axes;
        EXPECT_EQ(box.halfDiagonal, 0.5 * std::sqrt(c.x * c.x + c.y * c.y + c.z * c.z));
        EXPECT_TRUE(box.cornerPoints == (std::vector<VpcPoint3D>{box.minPoint, box.maxPoint}));
    }
}

TEST(VpcBoundingBoxAxisAligned, GrowsMergesAndScales) {
    Box box;
    EXPECT_EQ(corners(box), vpc::test::emptyExtent);
    const Box other(1, 2, 3, 4, 5, 6);
    EXPECT_EQ(corners(box.MergeWith(other)), "1 2 3 - 4 5 6");
    box.UpdateRegionOfInterest(VpcPoint3D(5, 6, 7));
    EXPECT_EQ(corners(box), "5 6 7 - 5 6 7");
    box.UpdateRegionOfInterest(VpcPoint3D(4, 9, 7));
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
}

TEST(VpcBoundingBoxAxisAligned, ContainsPoints) {
    const Box unit(0, 0, 0, 1, 1, 1);
    const struct {
        VpcPoint3D p;
        double tol;
        bool halfOpen;
        bool closed;
    } cases[] = {{{0, 0, 0}, 0, true, true},
                 {{1, 0.5, 0.5}, 0, false, true},
                 {{0.5, 1, 0.5}, 0, false, true},
                 {{0.5, 0.5, 1}, 0, false, true},
                 {{1, 0.5, 0.5}, 1e-9, true, true},
                 {{1.0000001, 0, 0}, 1, true, false},
                 {{0.5, -0.5, 0.5}, 0.5, true, false},
                 {{0.5, 0.5, -0.51}, 0.5, false, false},
                 {{std::nan(""), 0, 0}, 1, false, false}};
    for (const auto& c : cases) {
        EXPECT_EQ(unit.ContainsPointIntervalClosedMinOpenMax(c.p, c.tol), c.halfOpen) << c.p;
        EXPECT_EQ(unit.ContainsPointIntervalClosed(c.p, c.tol), c.closed) << c.p;
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
    std::string vertices;
    for (const VpcPoint3D& v : Box(0, 2, 4, 1, 3, 5).GetVertexList())
        vertices += joined(v.x, v.y, v.z) + ", ";
    EXPECT_EQ(vertices, "0 2 4, 0 3 4, 1 3 4, 1 2 4, 0 2 5, 0 3 5, 1 3 5, 1 2 5, ");
    EXPECT_TRUE(sortProjPoints(VpcPoint3D(1, 9, 0), VpcPoint3D(2, 0, 0)));
    EXPECT_TRUE(sortProjPoints(VpcPoint3D(1, 0, 9), VpcPoint3D(1, 1, 0)));
    EXPECT_FALSE(sortProjPoints(VpcPoint3D(1, 1, 0), VpcPoint3D(1, 1, 9)));
}

}  // namespace
