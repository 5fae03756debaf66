#include "core/geometry/VpcPlaneDef.h"

#include <gtest/gtest.h>

namespace {

TEST(VpcPlaneDef, IsBuiltFromAPointAndANormalOfAnyLength) {
    const VpcPlaneDef plane(VpcPoint3D(9, 4, -7), VpcVector3D(0, 5, 0));
    EXPECT_EQ(plane.coefficients, (std::array<double, 4>{0, 1, 0, -4}));
    EXPECT_EQ(plane.SignedDistance(100, 6.5, 3), 2.5);
    EXPECT_EQ(plane.SignedDistance(0, 0, 0), -4);
    const VpcPlaneDef none(VpcPoint3D(9, 4, -7), VpcVector3D(0, 0, 0));
    EXPECT_FALSE(none.IsBehind(0, 0, 0) || none.SignedDistance(0, 0, 0) < 0);
}

TEST(VpcPlaneDef, KnowsItsPointClosestToTheOrigin) {
    const VpcPlaneDef plane(VpcPoint3D(6, 0, 0), VpcVector3D(-1, -1, 0));
    const VpcPoint3D foot = plane.ClosestPointToOrigin();
    EXPECT_NEAR(foot.x, 3, 1e-15);
    EXPECT_NEAR(foot.y, 3, 1e-15);
    EXPECT_EQ(foot.z, 0);
}

TEST(VpcPlaneDef, IsTheSameWithinATolerance) {
    const VpcPlaneDef plane(VpcPoint3D(1, 2, 3), VpcVector3D(1, 2, 2));
    EXPECT_TRUE(plane.IsSame(VpcPlaneDef(VpcPoint3D(3, 1, 3), VpcVector3D(2, 4, 4)), 1e-12));
    EXPECT_FALSE(plane.IsSame(VpcPlaneDef(VpcPoint3D(1, 2, 3), VpcVector3D(-1, -2, -2)), 1e-6));
    const VpcPlaneDef moved(VpcPoint3D(1, 2, 3.01), VpcVector3D(1, 2, 2));
    EXPECT_FALSE(plane.IsSame(moved, 1e-3));
    EXPECT_TRUE(plane.IsSame(moved, 1e-2));
    const VpcPlaneDef none(VpcPoint3D(1, 2, 3), VpcVector3D(0, 0, 0));
    EXPECT_FALSE(none.IsSame(none, 1));
}

}  // namespace
