#include "tree/disk/VpcTree.h"

#include <gtest/gtest.h>

#include <cmath>

#include "platform/GiPcClipConfig.h"

// What a view shows through clippings and sections is held against brute force elsewhere; here
// are their borders.
namespace {

GiPcClipConfig region(OdUInt32 type, bool keepInside, const OdArray<OdGePoint2d>& vertices) {
    GiPcClipConfig config;
    config.type = type;
    config.flag2 = keepInside;
    config.vertices = vertices;
    return config;
}
const OdArray<OdGePoint2d> square{{0, 0}, {4, 0}, {4, 4}, {0, 4}};
const OdArray<OdGePoint2d> circle{{1, 1}, {1, 3}};

TEST(VpcClipping, KeepsInsideWhereExactlyOneOfTheLaterFlagsIsSet) {
    for (int flags = 0; flags < 8; ++flags) {
        GiPcClipConfig config = region(flags % 2 ? 0 : 1, false, flags % 2 ? circle : square);
        config.flag1 = flags & 4;
        config.flag2 = flags & 2;
        config.flag3 = flags & 1;
        config.matrix2[0][3] = 100;  // moves nothing
        const VpcClipping clipping(config);
        const bool keepInside = ((flags & 2) != 0) != ((flags & 1) != 0);
        EXPECT_EQ(clipping.isInside(1, 2, 77), keepInside) << flags;
        EXPECT_EQ(clipping.isInside(OdGePoint3d(-50, 2, 0)), !keepInside) << flags;
    }
}

TEST(VpcClipping, TakesBordersInAsItCounts) {
    const std::tuple<OdGePoint2d, bool, bool> cases[] = {
        {{1, 3}, true, true},   {{1, 3.001}, true, false}, {{3, 1}, true, true},
        {{1, -1}, false, true}, {{0, 2}, false, true},     {{4, 2}, true, false},
        {{2, 0}, false, true},  {{2, 4}, true, false},     {{0, 0}, false, true},
        {{4, 4}, true, false},  {{-1e-9, 2}, false, true}, {{4 + 1e-9, 2}, false, false}};
    for (const bool keepInside : {true, false}) {
        const VpcClipping polygon(region(1, keepInside, square));
        const VpcClipping round(region(0, keepInside, circle));
        for (const auto& [q, inSquare, inCircle] : cases) {
            EXPECT_EQ(polygon.pointInPolygon(q) == keepInside, inSquare) << q.x << ' ' << q.y;
            EXPECT_EQ(round.pointInCircle(q) == keepInside, inCircle) << q.x << ' ' << q.y;
        }
        for (const OdUInt32 type : {0U, 1U})
            EXPECT_TRUE(VpcClipping(region(type, keepInside, {})).isInside(1, 2, 3)) << "no shape";
        const VpcClipping dot(region(0, keepInside, {{1, 2}}));
        EXPECT_EQ(dot.isInside(1, 2, 3), keepInside) << "a circle of radius 0";
        EXPECT_EQ(dot.isInside(1, 2.1, 3), !keepInside);
    }
}

TEST(VpcClipping, LiesInItsPlane) {
    // A plane through (1, 2, 3) whose axes are the world's y and z.
    GiPcClipConfig config = region(1, true, square);
    config.plane = OdGePlane(OdGePoint3d(1, 2, 3), OdGeVector3d(5, 0, 0));
    const VpcClipping clipping(config);
    EXPECT_TRUE(clipping.isInside(-99, 2.1, 3.1) && clipping.isInside(99, 5.9, 6.9));
    EXPECT_FALSE(clipping.isInside(1, 1.9, 4) || clipping.isInside(1, 4, 7.1));
    // Up to a tilt of 1/64 the first axis is the world's x or nearly so, beyond that its y.
    for (const double tilt : {0.0155, 0.0157}) {
        config.plane = OdGePlane(OdGePoint3d(), OdGeVector3d(tilt, 0, std::sqrt(1 - tilt * tilt)));
        EXPECT_EQ(VpcClipping(config).isInside(-2, 2, 0), tilt > 1.0 / 64) << tilt;
    }
}

TEST(VpcTree, KeepsPointsOnASectionPlane) {
    VpcTree tree;
    tree.SetSectionPlanes({{OdString(), VpcPlaneDef(VpcPoint3D(7, 8, 5), VpcVector3D(0, 0, -2))}},
                          {});
    EXPECT_TRUE(tree.FiltersPoints());
    EXPECT_TRUE(tree.verifyPointWrtSections(0, 0, 5) && tree.verifyPointWrtSections(0, 0, 4.9));
    EXPECT_FALSE(tree.verifyPointWrtSections(0, 0, std::nextafter(5, 6)));
    tree.ClearSectionPlanes();
    EXPECT_TRUE(tree.verifyPointWrtSections(0, 0, 1e9) && !tree.FiltersPoints());
}

}  // namespace
