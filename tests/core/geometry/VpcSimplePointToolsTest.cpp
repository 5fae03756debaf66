#include "core/geometry/VpcSimplePointTools.h"

#include <cmath>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

namespace {

using std::numbers::pi;
using Tools = VpcSimplePointTools;

const std::vector<VpcPoint3D> threePoints{VpcPoint3D(3, -1, 0, 10, 20, 30, 0.5),
                                          VpcPoint3D(1, 5, -9, 40, 5, 60, -2),
                                          VpcPoint3D(2, 2, 4, 65535, 0, 1, 7)};

TEST(VpcSimplePointTools, Statistics) {
    VpcPoint3D min(9, 9, 9, 1);
    VpcPoint3D max;
    Tools::DeterminePointsMinMaxPoints(threePoints, min, max);
    EXPECT_TRUE(min == VpcPoint3D(1, -1, -9));
    EXPECT_TRUE(max == VpcPoint3D(3, 5, 4));
    EXPECT_EQ(min.red, 1) << "only the coordinates are written";
    Tools::DeterminePointsMinMaxPoints({}, min, max);
    EXPECT_TRUE(min == VpcPoint3D() && max == VpcPoint3D());

    double distance = 0;
    EXPECT_TRUE(Tools::DetermineMinPointsDistance(threePoints, distance));
    EXPECT_EQ(distance, std::sqrt(1 + 9 + 16));
    EXPECT_TRUE(Tools::DetermineMinPointsDistance({VpcPoint3D()}, distance));
    EXPECT_EQ(distance, 1e26);

    double range[8];
    const auto ranges = [&range](const std::vector<VpcPoint3D>& list) {
        Tools::GetColorRanges(list, range[0], range[1], range[2], range[3], range[4], range[5],
                              range[6], range[7]);
        return std::vector<double>(range, range + 8);
    };
    EXPECT_EQ(ranges(threePoints), (std::vector<double>{-2, 7, 10, 65535, 0, 20, 1, 60}));
    EXPECT_EQ(ranges({}), (std::vector<double>{1e5, -1e5, 1e5, -1e5, 1e5, -1e5, 1e5, -1e5}));
}

TEST(VpcSimplePointTools, SortIndices) {
    Tools::IndexList x{99};
    Tools::IndexList y;
    Tools::IndexList z;
    Tools::SortIndices(threePoints, x, y, z);
    EXPECT_EQ(x, (Tools::IndexList{1, 2, 0}));
    EXPECT_EQ(y, (Tools::IndexList{0, 2, 1}));
    EXPECT_EQ(z, (Tools::IndexList{1, 0, 2}));
}

TEST(VpcSimplePointTools, CountsEveryPointOnceByItsWorstCoordinate) {
    const double nan = std::nan("");
    const double inf = std::numeric_limits<double>::infinity();
    unsigned long long zero = 5;
    unsigned long long infinite = 5;
    unsigned long long nans = 5;
    unsigned long long regular = 5;
    EXPECT_TRUE(Tools::GetInvalidPointCounts(
        {VpcPoint3D(inf, nan, 0), VpcPoint3D(0, 0, nan), VpcPoint3D(0, -inf, 0),
         VpcPoint3D(0, -0.0, 0), VpcPoint3D(0, 0, 5e-324), VpcPoint3D(1, 1, 1),
         VpcPoint3D(0, 2, 0)},
        zero, infinite, nans, regular));
    EXPECT_EQ(nans, 2U);
    EXPECT_EQ(infinite, 1U);
    EXPECT_EQ(zero, 1U);
    EXPECT_EQ(regular, 3U);
}

TEST(VpcSimplePointTools, CoordinateSystems) {
    const struct {
        VpcVector3D cartesian;
        VpcVector3D spherical;
        VpcVector3D cylindrical;
    } cases[] = {
        {{0, 0, 2}, {2, 0, 0}, {0, 0, 2}},
        {{0, 3, 0}, {3, pi / 2, pi / 2}, {3, pi / 2, 0}},
        {{-1, 0, -1}, {std::sqrt(2), pi, 3 * pi / 4}, {1, pi, -1}},
        {{1, -1, 0}, {std::sqrt(2), -pi / 4, pi / 2}, {std::sqrt(2), -pi / 4, 0}},
    };
    for (const auto& c : cases) {
        const auto near = [](const VpcVector3D& a, const VpcVector3D& b) {
            return a.IsEqual(b, 1e-14);
        };
        EXPECT_TRUE(near(Tools::CartesianToSpherical(c.cartesian), c.spherical));
        EXPECT_TRUE(near(Tools::SphericalToCartesian(c.spherical), c.cartesian));
        EXPECT_TRUE(near(Tools::CartesianToCylindrical(c.cartesian), c.cylindrical));
        EXPECT_TRUE(near(Tools::CylindricalToCartesian(c.cylindrical), c.cartesian));
    }
    EXPECT_TRUE(std::isnan(Tools::CartesianToSpherical(VpcCoordinate3D()).z));
    const VpcPoint3D p = Tools::CartesianToCylindrical(VpcPoint3D(3, 4, 5, 1, 2, 3, 4.5, 6, 7));
    EXPECT_EQ(p.x, 5);
    EXPECT_EQ(p.red, 0) << "the argument's attributes are not carried over";
    EXPECT_EQ(p.scannerDistance, -1.0);
}

}  // namespace
