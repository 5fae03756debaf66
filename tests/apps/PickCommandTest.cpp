#include "support/ReaderTools.h"
#include "support/ViewedTest.h"

namespace vpc::test {
namespace {

/// A view from above of points on a plane, ten units apart; a pixel is a tenth of a unit.
class PickCommandTest : public ViewedTest {
protected:
    PickCommandTest() : ViewedTest({plane()}) {}

    static std::vector<PointRecord> plane() {
        std::vector<PointRecord> points;
        for (int i = 0; i < 16; ++i)
            points.push_back({10.0 * (i % 4) + 0.125, 10.0 * (i / 4), -3.5});
        return points;
    }
    static std::string at(double x, double y, double z, const std::string& more) {
        return "pick t.vpt --eye 20,20,96.5 --target 20,20,-3.5 --up 0,1,0 --field 100,100 "
               "--viewport 1000,1000 --at " +
               joined(x) + "," + joined(y) + "," + joined(z) + more;
    }
};

TEST_F(PickCommandTest, PicksThePointWithinABoxInPixels) {
    const PointRecord p = tree.pointsOf(0)[0];
    const std::string answer = joined(p.x, p.y, p.z) + "\n";
    // Half way up to the eye a perspective view shows the point half as far from its axis.
    EXPECT_EQ(run(at((p.x + 20) / 2, (p.y + 20) / 2, 46.5, " --perspective")).out, answer);
    const auto found = [&](double offset, const std::string& box) {
        return run(at(p.x + offset, p.y, p.z, " --parallel" + box)).out == answer;
    };
    EXPECT_TRUE(found(0.24, "") && found(-0.24, " --box 5") && found(0.44, " --box 9"));
    EXPECT_FALSE(found(0.26, "") || found(0.46, " --box 9") || found(0.06, " --box 1"));
}

TEST_F(PickCommandTest, SaysWhatIsWrong) {
    expectFailure(at(5, 5, 0, " --parallel"), 1,
                  "no point is shown within the box of 5 pixels at 5,5,0");
    expectFailure(at(5, 5, 0, " --box 0"), 2, "");
    expectFailure("pick t.vpt", 2, "");
    expectFailure("pick t.vpt --at 1,2", 2, "");
    expectFailure("pick none.vpt --at 1,2,3", 1, "");
}

}  // namespace
}  // namespace vpc::test
