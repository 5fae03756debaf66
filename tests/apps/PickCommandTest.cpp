#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/ReaderTools.h"
#include "support/ViewedTree.h"

namespace {

using testing::HasSubstr;
using vpc::test::PointRecord;
using vpc::test::ProgramResult;
using vpc::test::ViewedTree;

/// A view from above of points on a plane, ten units apart; a pixel is a tenth of a unit.
class PickCommandTest : public testing::Test {
protected:
    static std::vector<PointRecord> plane() {
        std::vector<PointRecord> points(16);
        for (std::size_t i = 0; i < points.size(); ++i) {
            points[i].x = 10.0 * static_cast<double>(i % 4) + 0.125;
            points[i].y = 10.0 * static_cast<double>(i / 4);
            points[i].z = -3.5;
        }
        return points;
    }
    ProgramResult pick(double x, double y, double z, const std::string& projection,
                       std::vector<std::string> more = {}) const {
        std::vector<std::string> arguments = {
            "pick",       "t.vpt",      "--eye",
            "20,20,96.5", "--target",   "20,20,-3.5",
            "--up",       "0,1,0",      "--field",
            "100,100",    "--viewport", "1000,1000",
            projection,   "--at",       vpc::test::joined(x, ',', y, ',', z)};
        std::erase(arguments.back(), ' ');
        arguments.insert(arguments.end(), more.begin(), more.end());
        return viewed.run(arguments);
    }

    const ViewedTree viewed{plane()};
};

TEST_F(PickCommandTest, PicksThePointUnderTheCursor) {
    const auto tree = viewed.tree();
    ASSERT_EQ(tree.levels.back().size(), 1U);
    const auto& points = tree.levels.back()[0].points;
    ASSERT_EQ(points.size(), 16U);
    for (const std::string projection : {"--perspective", "--parallel"}) {
        for (std::size_t i = 0; i < points.size(); ++i) {
            const PointRecord& p = points[i];
            // Half way up to the eye a perspective view shows the point half as far from its axis.
            const bool halfWay = projection == "--perspective";
            const ProgramResult result =
                halfWay ? pick((p.x + 20) / 2, (p.y + 20) / 2, (p.z + 96.5) / 2, projection)
                        : pick(p.x, p.y, 50, projection);
            // The last point of a node is never picked.
            const bool isLast = i + 1 == points.size();
            EXPECT_EQ(result.status, isLast ? 1 : 0) << result.err;
            EXPECT_EQ(result.out, isLast ? "" : vpc::test::joined(p.x, p.y, p.z) + "\n");
        }
    }
}

TEST_F(PickCommandTest, TheBoxIsInPixels) {
    const PointRecord p = viewed.tree().levels.back()[0].points[0];
    const auto found = [&](double offset, const std::vector<std::string>& box) {
        return pick(p.x + offset, p.y, p.z, "--parallel", box).status == 0;
    };
    EXPECT_TRUE(found(0.24, {}));
    EXPECT_FALSE(found(0.26, {}));
    EXPECT_TRUE(found(-0.24, {"--box", "5"}));
    EXPECT_TRUE(found(0.44, {"--box", "9"}));
    EXPECT_FALSE(found(0.46, {"--box", "9"}));
    EXPECT_FALSE(found(0.06, {"--box", "1"}));
}

TEST_F(PickCommandTest, SaysThatThereIsNone) {
    const ProgramResult result = pick(5, 5, 0, "--parallel");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("no point is shown within the box of 5 pixels at 5,5,0"));
}

TEST_F(PickCommandTest, WrongUsageGivesStatus2) {
    EXPECT_EQ(viewed.run({"pick", "t.vpt"}).status, 2);
    EXPECT_EQ(pick(5, 5, 0, "--parallel", {"--box", "0"}).status, 2);
    EXPECT_EQ(viewed.run({"pick", "t.vpt", "--at", "1,2"}).status, 2);
    EXPECT_EQ(viewed.run({"pick", "none.vpt", "--at", "1,2,3"}).status, 1);
}

}  // namespace
