#include "tree/disk/VpcTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "platform/GiPcClipConfig.h"

namespace {

constexpr double pi = std::numbers::pi;
using Doubles3 = std::array<double, 3>;

double dot(const Doubles3& a, const Doubles3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
Doubles3 cross(const Doubles3& a, const Doubles3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
Doubles3 unit(const Doubles3& a) {
    const double length = std::sqrt(dot(a, a));
    return {a[0] / length, a[1] / length, a[2] / length};
}

/// Made-up values, the same in every run.
class Random {
public:
    double between(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(engine_);
    }
    Doubles3 triple(double reach) {
        return {between(-reach, reach), between(-reach, reach), between(-reach, reach)};
    }
    bool coin() { return engine_() % 2 == 0; }

private:
    std::mt19937 engine_{17};
};

GiPcClipConfig region(OdUInt32 type, bool keepInside, const OdArray<OdGePoint2d>& vertices) {
    GiPcClipConfig config;
    config.type = type;
    config.flag2 = keepInside;
    config.vertices = vertices;
    return config;
}
const OdArray<OdGePoint2d> square{{0, 0}, {4, 0}, {4, 4}, {0, 4}};
const OdArray<OdGePoint2d> circle{{1, 1}, {1, 3}};

/// How often the closed line goes round the point, by the angles under which its edges are seen.
bool isSurrounded(const std::vector<OdGePoint2d>& corners, double x, double y) {
    double turned = 0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const OdGePoint2d& a = corners[i];
        const OdGePoint2d& b = corners[(i + 1) % corners.size()];
        turned +=
            std::remainder(std::atan2(b.y - y, b.x - x) - std::atan2(a.y - y, a.x - x), 2 * pi);
    }
    return std::abs(turned) > pi;
}

TEST(VpcClipping, KeepsInsideWhereExactlyOneOfTheLaterFlagsIsSet) {
    for (int flags = 0; flags < 8; ++flags) {
        GiPcClipConfig config = region(flags % 2 ? 0 : 1, false, flags % 2 ? circle : square);
        config.flag1 = flags & 4;
        config.flag2 = flags & 2;
        config.flag3 = flags & 1;
        config.matrix1[0][3] = 5;
        config.matrix2[0][3] = 100;
        const VpcClipping clipping(config);
        const bool keepInside = ((flags & 2) != 0) != ((flags & 1) != 0);
        EXPECT_EQ(clipping.keepInside, keepInside);
        EXPECT_EQ(clipping.flag1, (flags & 4) != 0);
        EXPECT_EQ(clipping.matrix1[0][3], 5);
        EXPECT_EQ(clipping.matrix2[0][3], 100);
        EXPECT_EQ(clipping.radius, flags % 2 ? 2 : 0);
        EXPECT_EQ(clipping.vertices.asArrayPtr(), std::as_const(config.vertices).asArrayPtr())
            << "shared";
        // The second matrix moves nothing.
        EXPECT_EQ(clipping.isInside(1, 2, 77), keepInside);
        EXPECT_EQ(clipping.isInside(OdGePoint3d(-50, 2, 0)), !keepInside);
    }
}

TEST(VpcClipping, TakesBordersInAsItCounts) {
    const struct {
        OdGePoint2d q;
        bool inSquare;
        bool inCircle;
    } cases[] = {{{1, 3}, true, true},   {{1, 3.001}, true, false}, {{3, 1}, true, true},
                 {{1, -1}, false, true}, {{0, 2}, false, true},     {{4, 2}, true, false},
                 {{2, 0}, false, true},  {{2, 4}, true, false},     {{0, 0}, false, true},
                 {{4, 4}, true, false},  {{-1e-9, 2}, false, true}, {{4 + 1e-9, 2}, false, false}};
    for (const bool keepInside : {true, false}) {
        const VpcClipping polygon(region(1, keepInside, square));
        const VpcClipping round(region(0, keepInside, circle));
        for (const auto& c : cases) {
            EXPECT_EQ(polygon.pointInPolygon(c.q) == keepInside, c.inSquare)
                << c.q.x << ' ' << c.q.y;
            EXPECT_EQ(round.pointInCircle(c.q) == keepInside, c.inCircle) << c.q.x << ' ' << c.q.y;
        }
    }
}

TEST(VpcClipping, LetsEveryPointPassThatItHasNoShapeFor) {
    for (const bool keepInside : {true, false}) {
        EXPECT_TRUE(VpcClipping(region(1, keepInside, {})).isInside(1, 2, 3));
        EXPECT_TRUE(VpcClipping(region(0, keepInside, {})).isInside(1, 2, 3));
        const VpcClipping dot(region(0, keepInside, {{1, 2}}));
        EXPECT_EQ(dot.isInside(1, 2, 3), keepInside) << "a circle of radius 0";
        EXPECT_EQ(dot.isInside(1, 2.1, 3), !keepInside);
    }
}

TEST(VpcClipping, AgreesWithTheTurnsOfThePolygonInItsPlane) {
    Random random;
    int insides = 0;
    for (int round = 0; round < 40; ++round) {
        const Doubles3 origin = random.triple(10);
        const Doubles3 normal = unit(round == 0 ? Doubles3{0.001, 0, 1} : random.triple(1));
        const bool nearZ = std::abs(normal[0]) < 1.0 / 64 && std::abs(normal[1]) < 1.0 / 64;
        const Doubles3 axisX = unit(cross(nearZ ? Doubles3{0, 1, 0} : Doubles3{0, 0, 1}, normal));
        const Doubles3 axisY = cross(normal, axisX);
        // A star: its corners go round once, near and far, so that it is full of notches.
        std::vector<OdGePoint2d> corners;
        GiPcClipConfig config = region(1 + static_cast<OdUInt32>(round), random.coin(), {});
        for (int i = 0; i < 3 + round; ++i) {
            const double angle = 2 * pi * i / (3 + round);
            const double reach = random.between(1, 9);
            corners.emplace_back(reach * std::cos(angle), reach * std::sin(angle));
            config.vertices.append(corners.back());
        }
        config.plane = OdGePlane(OdGePoint3d(origin[0], origin[1], origin[2]),
                                 OdGeVector3d(normal[0], normal[1], normal[2]));
        const VpcClipping clipping(config);
        for (int i = 0; i < 300; ++i) {
            const Doubles3 p = random.triple(15);
            const Doubles3 offset{p[0] - origin[0], p[1] - origin[1], p[2] - origin[2]};
            const bool inside = isSurrounded(corners, dot(offset, axisX), dot(offset, axisY));
            insides += inside;
            ASSERT_EQ(clipping.isInside(p[0], p[1], p[2]), inside == clipping.keepInside) << round;
        }
    }
    EXPECT_GT(insides, 500);
}

TEST(VpcTree, WantsEveryRegionPassed) {
    VpcTree tree;
    EXPECT_TRUE(tree.verifyPointWrtClippings(1, 2, 3));
    EXPECT_FALSE(tree.FiltersPoints());
    tree.SetLocalClippings({region(1, true, square), region(0, false, circle)});
    EXPECT_TRUE(tree.FiltersPoints());
    EXPECT_TRUE(tree.verifyPointWrtClippings(3.9, 3.9, 0));
    EXPECT_FALSE(tree.verifyPointWrtClippings(1, 1, 0)) << "within the circle";
    EXPECT_FALSE(tree.verifyPointWrtClippings(9, 9, 0)) << "out of the square";
    tree.SetLocalClippings({region(0, true, {{0, 0}, {1, 0}}), region(0, true, {{5, 0}, {6, 0}})});
    for (const double x : {0.0, 2.5, 5.0}) EXPECT_FALSE(tree.verifyPointWrtClippings(x, 0, 0)) << x;
    tree.SetLocalClippings({});
    EXPECT_FALSE(tree.FiltersPoints());
}

TEST(VpcTree, KeepsWhatLiesOnNoSectionsFarSide) {
    Random random;
    int kept = 0;
    for (int round = 0; round < 60; ++round) {
        VpcTransform3D toTree;
        toTree.SetEulerAngles(random.between(-3, 3), random.between(-3, 3), random.between(-3, 3),
                              VpcPoint3D(random.between(-9, 9), random.between(-9, 9), 1e4));
        std::vector<std::pair<Doubles3, Doubles3>> planes;
        VpcTree::SectionPlanes sections;
        for (int i = 0; i < 1 + round % 3; ++i) {
            planes.emplace_back(random.triple(4), random.triple(3));
            const auto& [point, normal] = planes.back();
            sections.emplace_back(OdString(),
                                  VpcPlaneDef(VpcPoint3D(point[0], point[1], point[2]),
                                              VpcVector3D(normal[0], normal[1], normal[2])));
        }
        VpcTree tree;
        tree.SetSectionPlanes(sections, toTree);
        ASSERT_EQ(tree.GetSectionPlanes().size(), planes.size());
        for (int i = 0; i < 100; ++i) {
            // A point where the sections were drawn, and where the tree has it.
            const Doubles3 drawn = random.triple(9);
            bool expected = true;
            double nearest = 1;
            for (const auto& [point, normal] : planes) {
                const double d = dot(normal, drawn) - dot(normal, point);
                expected = expected && d >= 0;
                nearest = std::min(nearest, std::abs(d));
            }
            VpcPoint3D p(drawn[0], drawn[1], drawn[2]);
            toTree.ApplyForwardTransform(p);
            if (nearest < 1e-6) continue;
            kept += expected;
            ASSERT_EQ(tree.verifyPointWrtSections(p), expected) << round;
            ASSERT_EQ(tree.verifyPointWrtSections(p.x, p.y, p.z), expected) << round;
        }
        EXPECT_TRUE(tree.FiltersPoints());
        tree.ClearSectionPlanes();
        EXPECT_TRUE(tree.verifyPointWrtSections(1e9, -1e9, 0) && !tree.FiltersPoints());
    }
    EXPECT_GT(kept, 500);
}

TEST(VpcTree, KeepsPointsOnASectionPlane) {
    VpcTree tree;
    tree.SetSectionPlanes({{OdString(), VpcPlaneDef(VpcPoint3D(7, 8, 5), VpcVector3D(0, 0, -2))}},
                          {});
    EXPECT_TRUE(tree.verifyPointWrtSections(0, 0, 5));
    EXPECT_TRUE(tree.verifyPointWrtSections(0, 0, 4.9));
    EXPECT_FALSE(tree.verifyPointWrtSections(0, 0, std::nextafter(5, 6)));
}

}  // namespace
