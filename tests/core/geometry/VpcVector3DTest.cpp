#include "core/geometry/VpcVector3D.h"

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "core/geometry/VpcLine3D.h"

namespace {

using std::numbers::pi;

void expectNear(const VpcVector3D& v, double x, double y, double z) {
    EXPECT_NEAR(v.x, x, 1e-15);
    EXPECT_NEAR(v.y, y, 1e-15);
    EXPECT_NEAR(v.z, z, 1e-15);
}

TEST(VpcVector3D, ToleranceIsItsOwnAndStrict) {
    VpcVector3D coarse(0, 0, 0);
    coarse.tolerance = 0.5;
    EXPECT_EQ(VpcVector3D(coarse).tolerance, 1e-13);
    EXPECT_EQ((coarse + coarse).tolerance, 1e-13);
    VpcVector3D assigned;
    assigned = coarse;
    EXPECT_EQ(assigned.tolerance, 1e-13);

    const VpcVector3D zero;
    EXPECT_FALSE(zero == VpcVector3D(1e-13, 0, 0));
    EXPECT_TRUE(zero == VpcVector3D(9e-14, -9e-14, 9e-14));
    EXPECT_FALSE(zero == VpcVector3D(0, 0, -1e-13));
    EXPECT_TRUE(coarse == VpcVector3D(0.4, 0, 0));
    for (const double tol : {0.0, -1.0}) {
        EXPECT_TRUE(coarse.IsEqual(VpcVector3D(0, 0.4, 0), tol)) << tol;
        EXPECT_FALSE(zero.IsEqual(VpcVector3D(0, 1e-12, 0), tol)) << tol;
    }
    EXPECT_FALSE(coarse.IsEqual(VpcVector3D(0, 0, 0.25), 0.25));
}

TEST(VpcVector3D, DirectionsAndZeroVectors) {
    EXPECT_EQ(VpcVector3D(1, 2, 3).Cross(VpcVector3D(4, -5, 6)), VpcVector3D(27, 6, -13));
    EXPECT_EQ(VpcVector3D(VpcPoint3D(1, 1, 1), VpcPoint3D(2, 3, 5)), VpcVector3D(1, 2, 4));
    VpcVector3D v(0, 3, -4);
    v.Normalize();
    EXPECT_EQ(v, VpcVector3D(0, 0.6, -0.8));
    VpcVector3D zero;
    zero.Normalize();
    EXPECT_TRUE(std::isnan(zero.x));
    EXPECT_TRUE(std::isinf((v / 0).z));
}

TEST(VpcVector3D, AxesFromNormal) {
    const double s = std::sqrt(0.5);
    const struct {
        VpcVector3D normal;
        VpcVector3D x;
        VpcVector3D y;
    } cases[] = {
        {{0, 0, 1}, {1, 0, 0}, {0, 1, 0}},  {{0, 0, -9}, {-1, 0, 0}, {0, 1, 0}},
        {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}},  {{0, 5, 0}, {-1, 0, 0}, {0, 0, 1}},
        {{1, 1, 0}, {-s, s, 0}, {0, 0, 1}},
    };
    for (const auto& c : cases) {
        VpcVector3D x;
        VpcVector3D y;
        VpcVector3D::CreateArbitraryAxesFromNormal(c.normal, x, y);
        expectNear(x, c.x.x, c.x.y, c.x.z);
        expectNear(y, c.y.x, c.y.y, c.y.z);
    }
    // Both sides of the threshold: a component of exactly 1/64 counts as off the z axis.
    const double edge = 1.0 / 64;
    const double rest = std::sqrt(1 - edge * edge);
    VpcVector3D x;
    VpcVector3D y;
    VpcVector3D::CreateArbitraryAxesFromNormal({edge * 0.99, 0, rest}, x, y);
    expectNear(y, 0, 1, 0);
    VpcVector3D::CreateArbitraryAxesFromNormal({edge * 1.01, 0, rest}, x, y);
    expectNear(x, 0, 1, 0);
}

TEST(VpcVector3D, Angles) {
    const VpcVector3D x(2, 0, 0);
    const VpcVector3D y(0, 3, 0);
    const VpcVector3D z(0, 0, 1);
    EXPECT_NEAR(x.AngleTo(y), pi / 2, 1e-15);
    EXPECT_NEAR(x.AngleTo(VpcVector3D(-1, 0, 0)), pi, 1e-15);
    EXPECT_TRUE(std::isnan(x.AngleTo(VpcVector3D())));
    EXPECT_NEAR(x.DirectionalAngle(y, z), pi / 2, 1e-15);
    EXPECT_NEAR(y.DirectionalAngle(x, z), -pi / 2, 1e-15);
    EXPECT_NEAR(x.DirectionalAngle(VpcVector3D(-1, 0, 0), z), -pi, 1e-15) << "parallel: negative";
    EXPECT_EQ(x.AngleTo2PI(x, z), 0);
    EXPECT_NEAR(x.AngleTo2PI(x, x), pi / 4, 1e-15);
    EXPECT_NEAR(x.AngleTo2PI(x, VpcVector3D(-2, 0, 0)), 7 * pi / 4, 1e-15);
    EXPECT_TRUE(VpcVector3D(3, 4, 0.4).IsHorizontal(0.08));
    EXPECT_FALSE(VpcVector3D(0, 4, 3).IsHorizontal(0.6)) << "strict";
    EXPECT_TRUE(VpcVector3D(0, 0, -2).IsVertical(1e-9));
    EXPECT_FALSE(VpcVector3D(3, 0, 4).IsVertical(0.19));
}

TEST(VpcLine3D, DistanceToTheEndlessLine) {
    const VpcLine3D line(VpcPoint3D(1, 1, 0), VpcVector3D(0, 0, -10));
    EXPECT_EQ(line.DistanceTo(VpcPoint3D(4, 5, 100)), 5);
    EXPECT_EQ(line.DistanceTo(VpcPoint3D(1, 1, -7)), 0);
    EXPECT_EQ(VpcLine3D(VpcPoint3D(1, 1, 0), VpcVector3D()).DistanceTo(VpcPoint3D(1, 1, 2)), 2);
}

}  // namespace
