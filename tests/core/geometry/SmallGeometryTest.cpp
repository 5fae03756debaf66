#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "core/geometry/VpcPlaneDef.h"
#include "core/geometry/VpcSimplePointTools.h"
#include "core/geometry/VpcTransform3D.h"
#include "support/ReaderTools.h"

namespace {

using std::numbers::pi;
using vpc::test::joined;

TEST(VpcPlaneDef, HasItsNormalAndItsDistance) {
    const VpcPlaneDef plane(VpcPoint3D(9, 4, -7), VpcVector3D(0, 5, 0));
    EXPECT_EQ(plane.coefficients, (std::array<double, 4>{0, 1, 0, -4}));
    EXPECT_EQ(plane.SignedDistance(100, 6.5, 3), 2.5);
    EXPECT_TRUE(plane.ClosestPointToOrigin() == VpcPoint3D(0, 4, 0));
    const VpcPlaneDef byPoints(VpcPoint3D(0, 0, 3), VpcPoint3D(2, 0, 3), VpcPoint3D(0, 5, 3));
    EXPECT_EQ(byPoints.coefficients, (std::array<double, 4>{0, 0, 1, -3}));
    EXPECT_TRUE(byPoints.IsBehind(9, 9, 2.9) && !byPoints.IsBehind(9, 9, 3));
    const VpcPlaneDef moved(VpcPoint3D(9, 4.01, 0), VpcVector3D(0, 1, 0));
    EXPECT_TRUE(plane.IsSame(moved, 0.02) && !plane.IsSame(moved, 1e-3));
    EXPECT_FALSE(VpcPlaneDef(VpcPoint3D(9, 4, -7), VpcVector3D()).IsBehind(0, 0, 0));
}

TEST(VpcTransform3D, AppliesTheHostsMatrixThereAndBack) {
    OdGeMatrix3d matrix;  // takes x to y, y to z and z to x, then moves by (10, 20, 30)
    const double rows[4][4] = {{0, 0, 1, 10}, {1, 0, 0, 20}, {0, 1, 0, 30}, {5, 6, 7, 8}};
    for (int i = 0; i < 16; ++i) matrix[i / 4][i % 4] = rows[i / 4][i % 4];
    const VpcTransform3D transform(matrix);
    VpcPoint3D p(1, 2, 3, 7);
    VpcVector3D v(p);
    transform.ApplyForwardTransform(p);
    transform.ApplyForwardTransform(v);
    EXPECT_EQ(v, VpcVector3D(13, 21, 32));
    EXPECT_EQ(p.ToVpcVector3D(), v);
    EXPECT_EQ(p.red, 7);
    transform.ApplyInverseTransform(p);
    EXPECT_EQ(p.ToVpcVector3D(), VpcVector3D(1, 2, 3));
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(transform.ToOdGeMatrix3d()[i / 4][i % 4], i < 12 ? rows[i / 4][i % 4] : i == 15);
}

TEST(VpcTransform3D, TurnsCounterClockwiseAboutXThenYThenZ) {
    using T = VpcTransform3D;
    const VpcVector3D v(1, 2, 3);
    EXPECT_EQ(T::RotateAxisX(v, pi / 2), VpcVector3D(1, -3, 2));
    EXPECT_EQ(T::RotateAxisY(v, pi / 2), VpcVector3D(3, 2, -1));
    EXPECT_EQ(T::RotateAxisZ(v, pi / 2), VpcVector3D(-2, 1, 3));
    const VpcPoint3D origin(10, 20, 30);
    const VpcVector3D turned = T::RotateAxisZ(T::RotateAxisY(T::RotateAxisX(v, 0.3), -1.1), 2.5);
    T transform;
    transform.SetEulerAngles(0.3, -1.1, 2.5, origin);
    VpcPoint3D byMatrix(v);
    transform.ApplyForwardTransform(byMatrix);
    VpcPoint3D byAngles = origin + v;
    T::RotatePoint(byAngles, 0.3, -1.1, 2.5, origin);
    for (const VpcPoint3D& p : {byMatrix, byAngles}) EXPECT_TRUE(p == origin + turned) << p;
}

TEST(VpcSimplePointTools, Statistics) {
    using Tools = VpcSimplePointTools;
    const std::vector<VpcPoint3D> points{VpcPoint3D(3, -1, 0, 10, 20, 30, 0.5),
                                         VpcPoint3D(1, 5, -9, 40, 5, 60, -2),
                                         VpcPoint3D(2, 2, 4, 65535, 0, 1, 7)};
    VpcPoint3D min(9, 9, 9, 1), max;
    Tools::DeterminePointsMinMaxPoints(points, min, max);
    EXPECT_TRUE(min == VpcPoint3D(1, -1, -9) && max == VpcPoint3D(3, 5, 4) && min.red == 1);
    Tools::IndexList x{99}, y, z;
    Tools::SortIndices(points, x, y, z);
    EXPECT_EQ(joined(x[0], x[1], x[2], y[0], y[1], y[2], z[0], z[1], z[2]), "1 2 0 0 2 1 1 0 2");
    double distance = 0;
    EXPECT_TRUE(Tools::DetermineMinPointsDistance(points, distance));
    EXPECT_EQ(distance, std::sqrt(26));
    std::array<double, 8> r{};  // intensity, red, green and blue, each from its least on
    Tools::GetColorRanges(points, r[0], r[1], r[2], r[3], r[4], r[5], r[6], r[7]);
    EXPECT_EQ(r, (std::array<double, 8>{-2, 7, 10, 65535, 0, 20, 1, 60}));
}

}  // namespace
