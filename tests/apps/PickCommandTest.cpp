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

TEST_F(PickCommandTest, PicksThePointUnderTheCursor) {
    const auto points = tree.pointsOf(0);
    for (const PointRecord& p : points) {
        // Half way up to the eye a perspective view shows the point half as far from its axis.
        for (const std::string& command :
             {at((p.x + 20) / 2, (p.y + 20) / 2, (p.z + 96.5) / 2, " --perspective"),
              at(p.x, p.y, 50, " --parallel")}) {
            // The last point of a node is never picked.
            const bool isLast = &p == &points.back();
            const ProgramResult result = run(command);
            EXPECT_EQ(result.status, isLast ? 1 : 0) << result.err;
            EXPECT_EQ(result.out, isLast ? "" : joined(p.x, p.y, p.z) + "\n");
        }
    }
}

TEST_F(PickCommandTest, TheBoxIsInPixels) {
    const PointRecord p = tree.pointsOf(0)[0];
    const auto found = [&](double offset, const std::string& box) {
        return run(at(p.x + offset, p.y, p.z, " --parallel" + box)).status == 0;
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
