#include "core/geometry/VpcTransform3D.h"

#include <numbers>

#include <gtest/gtest.h>

namespace {

using std::numbers::pi;

void expectNear(const VpcCoordinate3D& c, double x, double y, double z) {
    EXPECT_NEAR(c.x, x, 1e-14);
    EXPECT_NEAR(c.y, y, 1e-14);
    EXPECT_NEAR(c.z, z, 1e-14);
}

/// Takes x to y, y to z and z to x, then moves by (10, 20, 30).
VpcTransform3D cycle() {
    OdGeMatrix3d matrix;
    const double rows[4][4] = {{0, 0, 1, 10}, {1, 0, 0, 20}, {0, 1, 0, 30}, {5, 6, 7, 8}};
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) matrix[r][c] = rows[r][c];
    return {matrix};
}

TEST(VpcTransform3D, AppliesRotationAndTranslation) {
    const VpcTransform3D transform = cycle();
    VpcPoint3D p(1, 2, 3, 7);
    EXPECT_TRUE(transform.ApplyForwardTransform(p));
    expectNear(p, 13, 21, 32);
    EXPECT_EQ(p.red, 7);
    EXPECT_TRUE(transform.ApplyInverseTransform(p));
    expectNear(p, 1, 2, 3);
    VpcVector3D v(1, 2, 3);
    transform.ApplyForwardRotation(v);
    expectNear(v, 3, 1, 2);
    transform.ApplyInverseRotation(v);
    expectNear(v, 1, 2, 3);
    transform.ApplyForwardTransform(v);
    expectNear(v, 13, 21, 32);
    expectNear(transform.GetColumn(0), 0, 1, 0);
    expectNear(transform.GetColumn(1), 0, 0, 1);
    expectNear(transform.GetColumn(2), 1, 0, 0);
    expectNear(transform.GetColumn(99), 1, 0, 0);

    const VpcTransform3D identity;
    identity.ApplyForwardTransform(p);
    identity.ApplyInverseTransform(p);
    expectNear(p, 1, 2, 3);
}

TEST(VpcTransform3D, GoesToTheHostsMatrixAndBack) {
    const OdGeMatrix3d matrix = cycle().ToOdGeMatrix3d();
    const double expected[4][4] = {{0, 0, 1, 10}, {1, 0, 0, 20}, {0, 1, 0, 30}, {0, 0, 0, 1}};
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) EXPECT_EQ(matrix.entry[r][c], expected[r][c]) << r << c;
    double rotation[3][3] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
    double translation[3] = {-1, -2, -3};
    const VpcTransform3D transform(rotation, translation);
    VpcPoint3D p(1, 0, 0);
    transform.ApplyForwardTransform(p);
    expectNear(p, 0, 2, 4);
}

TEST(VpcTransform3D, TurnsCounterClockwise) {
    const VpcVector3D v(1, 2, 3);
    expectNear(VpcTransform3D::RotateAxisX(v, pi / 2), 1, -3, 2);
    expectNear(VpcTransform3D::RotateAxisY(v, pi / 2), 3, 2, -1);
    expectNear(VpcTransform3D::RotateAxisZ(v, pi / 2), -2, 1, 3);
}

TEST(VpcTransform3D, EulerAnglesTurnAboutXThenYThenZ) {
    VpcTransform3D transform;
    transform.SetEulerAngles(pi / 2, pi / 2, pi / 2, VpcPoint3D(10, 20, 30));
    EXPECT_EQ(transform.angles[2], pi / 2);
    // (1, 2, 3): about x (1, -3, 2), about y (2, -3, -1), about z (3, 2, -1).
    VpcPoint3D p(1, 2, 3);
    transform.ApplyForwardTransform(p);
    expectNear(p, 13, 22, 29);
    VpcPoint3D q(11, 22, 33);
    VpcTransform3D::RotatePoint(q, pi / 2, pi / 2, pi / 2, VpcPoint3D(10, 20, 30));
    expectNear(q, 13, 22, 29);
    // Angles that are no quarter turns, through the matrix and step by step.
    transform.SetEulerAngles(0.3, -1.1, 2.5, VpcPoint3D());
    VpcVector3D v(1, 2, 3);
    const VpcVector3D stepped = VpcTransform3D::RotateAxisZ(
        VpcTransform3D::RotateAxisY(VpcTransform3D::RotateAxisX(v, 0.3), -1.1), 2.5);
    transform.ApplyForwardTransform(v);
    expectNear(v, stepped.x, stepped.y, stepped.z);
}

TEST(VpcTransform3D, BaseVectorsAreColumns) {
    VpcTransform3D transform;
    transform.CreateFromBaseVectors({0, 1, 0}, {0, 0, 1}, {1, 0, 0}, {10, 20, 30});
    VpcPoint3D p(1, 2, 3);
    transform.ApplyForwardTransform(p);
    expectNear(p, 13, 21, 32);
}

}  // namespace
