#include <cmath>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

#include "core/geometry/VpcInterval.h"
#include "core/geometry/VpcLine3D.h"
#include "core/geometry/VpcNodeIndex.h"
#include "core/geometry/VpcNumMathTools.h"
#include "core/geometry/VpcPlaneDef.h"
#include "core/geometry/VpcSimplePointTools.h"
#include "core/geometry/VpcTransform3D.h"
#include "support/ReaderTools.h"

namespace {

using std::numbers::pi;
using vpc::test::joined;

TEST(VpcInterval, KeepsItsBoundsInOrder) {
    const auto after = [](auto change) {
        VpcInterval interval(5, 2);
        change(interval);
        return joined(interval.min, interval.max);
    };
    EXPECT_EQ(after([](VpcInterval& i) { i.ReplaceMin(7); }), "5 7");
    EXPECT_EQ(after([](VpcInterval& i) { i.ReplaceMax(1); }), "1 2");
    EXPECT_EQ(after([](VpcInterval& i) { i.AddBoundary(-1); }), "2 5");
    const VpcInterval low(0, 1), next(1, 2), across(0.5, 2);
    EXPECT_TRUE(low.OverlapsHalfOpen(across) && across.OverlapsHalfOpen(low));
    EXPECT_FALSE(low.OverlapsHalfOpen(next) || next.OverlapsHalfOpen(low));
    EXPECT_TRUE(low.OverlapsClosed(next) && !low.OverlapsClosed({2, 3}));
    // Where both begin together it is the other interval whose end counts.
    EXPECT_FALSE(VpcInterval(0, 2).OverlapsHalfOpen({0, 0}));
    EXPECT_EQ(VpcNumMathTools::RescaleRange(2, 1, 5, 10, 30), 15);
}

TEST(VpcNodeIndex, PrintsThePathFromTheRoot) {
    const VpcNodeIndex index{{0, 0, 0}, {1, ~0ULL, 123456}};
    EXPECT_EQ(index.ToString(), "-0-0-0---1-18446744073709551615-123456--");
    EXPECT_TRUE(index.IsSame({{0, 0, 0}, {1, ~0ULL, 123456}}) && !index.IsSame({{0, 0, 0}}));
}

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

// --- Vectors and lines ---------------------------------------------------------------------------

TEST(VpcVector3D, ToleranceIsItsOwnAndStrict) {
    VpcVector3D coarse, assigned;
    coarse.tolerance = 0.5;
    assigned = coarse;
    EXPECT_EQ(joined(VpcVector3D(coarse).tolerance, assigned.tolerance), "1e-13 1e-13");
    EXPECT_TRUE(VpcVector3D() == VpcVector3D(9e-14, -9e-14, 9e-14));
    EXPECT_FALSE(VpcVector3D() == VpcVector3D(0, 0, -1e-13));
    EXPECT_TRUE(coarse.IsEqual(VpcVector3D(0, 0.4, 0), 0.0)) << "no tolerance: its own";
}

TEST(VpcVector3D, AxesFromNormal) {
    const double s = std::sqrt(0.5);
    // On both sides of the limit up to which a normal counts as vertical, as sine and cosine.
    const double s1 = 0.99 / 64, c1 = std::sqrt(1 - s1 * s1);
    const double s2 = 1.01 / 64, c2 = std::sqrt(1 - s2 * s2);
    const std::array<VpcVector3D, 3> cases[] = {
        {{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}},      {{{0, 0, -9}, {-1, 0, 0}, {0, 1, 0}}},
        {{{0, 5, 0}, {-1, 0, 0}, {0, 0, 1}}},     {{{1, 1, 0}, {-s, s, 0}, {0, 0, 1}}},
        {{{s1, 0, c1}, {c1, 0, -s1}, {0, 1, 0}}}, {{{s2, 0, c2}, {0, 1, 0}, {-c2, 0, s2}}},
        {{{0, s2, c2}, {-1, 0, 0}, {0, -c2, s2}}}};
    for (const auto& [normal, expectedX, expectedY] : cases) {
        VpcVector3D x, y;
        VpcVector3D::CreateArbitraryAxesFromNormal(normal, x, y);
        EXPECT_TRUE(x == expectedX && y == expectedY) << normal << ": " << x << ", " << y;
    }
}

TEST(VpcVector3D, Angles) {
    const VpcVector3D x(2, 0, 0), back(-1, 0, 0), y(0, 3, 0), z(0, 0, 1);
    EXPECT_NEAR(x.AngleTo(back), pi, 1e-15);
    EXPECT_TRUE(std::isnan(x.AngleTo(VpcVector3D())));
    EXPECT_NEAR(x.DirectionalAngle(y, z), pi / 2, 1e-15);
    EXPECT_NEAR(x.DirectionalAngle(back, z), -pi, 1e-15) << "parallel: negative";
    EXPECT_NEAR(x.AngleTo2PI(x, x), pi / 4, 1e-15);
    EXPECT_NEAR(x.AngleTo2PI(x, back), 2 * pi - std::atan2(2, 4), 1e-15);
    EXPECT_TRUE(VpcVector3D(3, 4, 0.4).IsHorizontal(0.08));
    EXPECT_FALSE(VpcVector3D(0, 4, 3).IsHorizontal(0.6)) << "strict";
    EXPECT_TRUE(VpcVector3D(3, 0, 4).IsVertical(0.21) && !VpcVector3D(3, 0, 4).IsVertical(0.19));
}

// --- Transforms ----------------------------------------------------------------------------------

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

// --- Lists of points -----------------------------------------------------------------------------

using Tools = VpcSimplePointTools;

TEST(VpcSimplePointTools, Statistics) {
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

TEST(VpcSimplePointTools, CountsEveryPointOnceByItsWorstCoordinate) {
    const double nan = std::nan(""), inf = std::numeric_limits<double>::infinity();
    unsigned long long zero = 5, infinite = 5, nans = 5, regular = 5;
    EXPECT_TRUE(Tools::GetInvalidPointCounts({VpcPoint3D(inf, nan, 0), VpcPoint3D(0, -inf, 0),
                                              VpcPoint3D(0, -0.0, 0), VpcPoint3D(0, 0, 5e-324)},
                                             zero, infinite, nans, regular));
    EXPECT_EQ(joined(nans, infinite, zero, regular), "1 1 1 1");
}

TEST(VpcSimplePointTools, CoordinateSystems) {
    // Cartesian, spherical and cylindrical.
    const std::array<VpcVector3D, 3> cases[] = {
        {{{0, 0, 2}, {2, 0, 0}, {0, 0, 2}}},
        {{{0, 3, 0}, {3, pi / 2, pi / 2}, {3, pi / 2, 0}}},
        {{{-1, 0, -1}, {std::sqrt(2), pi, 3 * pi / 4}, {1, pi, -1}}}};
    for (const auto& [cartesian, spherical, cylindrical] : cases) {
        EXPECT_EQ(VpcVector3D(Tools::CartesianToSpherical(cartesian)), spherical);
        EXPECT_EQ(VpcVector3D(Tools::SphericalToCartesian(spherical)), cartesian);
        EXPECT_EQ(VpcVector3D(Tools::CartesianToCylindrical(cartesian)), cylindrical);
        EXPECT_EQ(VpcVector3D(Tools::CylindricalToCartesian(cylindrical)), cartesian);
    }
    EXPECT_TRUE(std::isnan(Tools::CartesianToSpherical(VpcCoordinate3D()).z));
}

}  // namespace
