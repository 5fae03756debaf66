#include "core/geometry/VpcNodeIndex.h"

#include <vector>

#include <gtest/gtest.h>

namespace {

using Step = VpcTriplet<unsigned long long>;

TEST(VpcNodeIndex, PrintsThePathFromTheRoot) {
    EXPECT_EQ(VpcNodeIndex().ToString(), "");
    EXPECT_EQ(Step(3, 0, 7).ToString(4), "-3-0-7--");
    EXPECT_EQ(Step(~0ULL, 123456, 1).ToString(1), "-18446744073709551615-123456-1--");
    EXPECT_EQ((VpcNodeIndex{{0, 0, 0}, {1, 0, 1}}.ToString()), "-0-0-0---1-0-1--");
}

TEST(VpcNodeIndex, IsSameComparesLengthAndEveryMember) {
    const std::vector<Step> path{{0, 0, 0}, {1, 2, 3}};
    const VpcNodeIndex index(path);
    EXPECT_TRUE(index.IsSame(path));
    EXPECT_TRUE(index == path);
    EXPECT_FALSE(index.IsSame({{0, 0, 0}}));
    EXPECT_FALSE(index.IsSame({{0, 0, 0}, {1, 2, 3}, {0, 0, 0}}));
    EXPECT_FALSE(index.IsSame({{1, 2, 3}, {0, 0, 0}}));
    for (const Step& other : {Step{9, 2, 3}, Step{1, 9, 3}, Step{1, 2, 9}})
        EXPECT_FALSE(index.IsSame({{0, 0, 0}, other}));
}

}  // namespace
