#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "platform/OdGeExtents3d.h"
#include "platform/OdGeMatrix3d.h"
#include "platform/OdGePlane.h"
#include "platform/OdGePoint2d.h"
#include "platform/OdGePoint3d.h"

namespace {

OdGeMatrix3d matrixOf(const double (&rows)[16]) {
    OdGeMatrix3d matrix;
    for (int i = 0; i < 16; ++i) matrix[i / 4][i % 4] = rows[i];
    return matrix;
}

void expectNear(const OdGeMatrix3d& a, const OdGeMatrix3d& b, double tolerance) {
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(a[i / 4][i % 4], b[i / 4][i % 4], tolerance) << "entry " << i;
}

TEST(OdGeMatrix3d, InvertsWhateverItsPivotsAre) {
    const struct {
        double matrix[16];
        double inverse[16];
    } exact[] = {
        {{1, 0, 0, 500000, 0, 1, 0, -3, 0, 0, 1, 7, 0, 0, 0, 1},
         {1, 0, 0, -500000, 0, 1, 0, 3, 0, 0, 1, -7, 0, 0, 0, 1}},
        // A quarter turn about z with a move: the first pivot is 0.
        {{0, -1, 0, 2, 1, 0, 0, 4, 0, 0, 1, 8, 0, 0, 0, 1},
         {0, 1, 0, -4, -1, 0, 0, 2, 0, 0, 1, -8, 0, 0, 0, 1}},
        {{2, 0, 0, 0, 0, 0, 4, 0, 0, 8, 0, 0, 0, 0, 0, 0.5},
         {0.5, 0, 0, 0, 0, 0, 0.125, 0, 0, 0.25, 0, 0, 0, 0, 0, 2}},
    };
    for (const auto& c : exact) expectNear(matrixOf(c.matrix).inverse(), matrixOf(c.inverse), 0);

    std::mt19937 random(5);
    std::uniform_real_distribution<double> entries(-10, 10);
    for (int i = 0; i < 200; ++i) {
        OdGeMatrix3d matrix;
        for (int k = 0; k < 16; ++k) matrix[k / 4][k % 4] = entries(random);
        expectNear(matrix * matrix.inverse(), OdGeMatrix3d(), 1e-8);
        expectNear(matrix.inverse() * matrix, OdGeMatrix3d(), 1e-8);
    }
}

TEST(OdGeMatrix3d, HasTheIdentityForAnInverseWhereThereIsNone) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const double singular[][16] = {
        {},
        {1, 2, 3, 4, 2, 4, 6, 8, 0, 0, 1, 0, 0, 0, 0, 1},
        {nan, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1},
        {infinity, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1},
    };
    for (const auto& rows : singular) EXPECT_EQ(matrixOf(rows).inverse(), OdGeMatrix3d());
}

TEST(OdGePoint3d, IsMovedByTheUpperRows) {
    const OdGeMatrix3d matrix = matrixOf({0, -1, 0, 10, 2, 0, 0, 20, 0, 0, 3, 30, 9, 9, 9, 9});
    OdGePoint3d point(1, 2, 3);
    EXPECT_EQ(&point.transformBy(matrix), &point);
    EXPECT_EQ(point, OdGePoint3d(8, 22, 39));
    EXPECT_EQ(OdGePoint3d(1, 2, 3) - OdGePoint3d(0, 4, 9), OdGeVector3d(1, -2, -6));
    EXPECT_EQ(OdGePoint3d(1, 2, 3).distanceTo({3, 5, 9}), 7);
    EXPECT_EQ(OdGePoint3d(1, 2, 3) + OdGeVector3d(1, 1, 1) - OdGeVector3d(0, 0, 4),
              OdGePoint3d(2, 3, 0));
}

TEST(OdGeVector3d, HasADirectionOnlyWithALength) {
    EXPECT_EQ(OdGeVector3d(0, 3, 4).normal(), OdGeVector3d(0, 0.6, 0.8));
    EXPECT_EQ(OdGeVector3d().normal(), OdGeVector3d());
    EXPECT_EQ(OdGeVector3d(1, 2, 3).crossProduct({4, 5, 6}), OdGeVector3d(-3, 6, -3));
    EXPECT_EQ(OdGeVector3d(1, 2, 3).dotProduct({4, 5, 6}), 32);
}

TEST(OdGePlane, ProjectsByTheArbitraryAxisRule) {
    const double tilt = 1.0 / 64.0;
    const struct {
        OdGePoint3d origin;
        OdGeVector3d normal;
        OdGePoint3d point;
        OdGePoint2d projected;
    } cases[] = {
        {{0, 0, 0}, {0, 0, 1}, {5, 7, 99}, {5, 7}},
        {{1, 2, 3}, {0, 0, 8}, {5, 7, 99}, {4, 5}},
        {{0, 0, 0}, {0, 0, -1}, {5, 7, 99}, {-5, 7}},
        {{0, 0, 0}, {1, 0, 0}, {5, 7, 99}, {7, 99}},
        {{0, 0, 0}, {0, 1, 0}, {5, 7, 99}, {-5, 99}},
        {{1, 1, 1}, {}, {5, 7, 99}, {0, 0}},
        // At the rule's limit the first axis turns from the world's x to its y.
        {{0, 0, 0}, {tilt, 0, std::sqrt(1 - tilt * tilt)}, {0, 1, 0}, {1, 0}},
        {{0, 0, 0}, {0.99 * tilt, 0, 1}, {0, 1, 0}, {0, 1}},
    };
    for (const auto& c : cases) {
        const OdGePoint2d at = c.point.convert2d(OdGePlane(c.origin, c.normal));
        EXPECT_LT(at.distanceTo(c.projected), 1e-12) << at.x << ", " << at.y;
    }
    EXPECT_EQ(OdGePlane(), OdGePlane({}, {0, 0, 2}));
}

TEST(OdGePlane, HasAxesOfLength1SquareToEachOther) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> entries(-1, 1);
    for (int i = 0; i < 100; ++i) {
        const OdGeVector3d normal(entries(random), entries(random), entries(random));
        OdGePoint3d origin;
        OdGeVector3d axis1;
        OdGeVector3d axis2;
        OdGePlane({1, 2, 3}, normal).getCoordinateSystem(origin, axis1, axis2);
        EXPECT_EQ(origin, OdGePoint3d(1, 2, 3));
        EXPECT_NEAR(axis1.length(), 1, 1e-12);
        EXPECT_LT((axis1.crossProduct(axis2) - normal.normal()).length(), 1e-12);
    }
}

TEST(OdGeExtents3d, GrowsFromNothing) {
    OdGeExtents3d box;
    EXPECT_FALSE(box.isValidExtents());
    box.addPoint({1, -2, 3});
    EXPECT_TRUE(box.isValidExtents());
    box.addPoint({-1, 5, 3});
    EXPECT_EQ(box.minPoint(), OdGePoint3d(-1, -2, 3));
    EXPECT_EQ(box.maxPoint(), OdGePoint3d(1, 5, 3));
    box.set({0, 0, 1}, {1, 1, 0});
    EXPECT_FALSE(box.isValidExtents());
}

}  // namespace
