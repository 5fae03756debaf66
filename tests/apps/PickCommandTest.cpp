#include <nlohmann/json.hpp>

#include "support/Picture.h"
#include "support/ReaderTools.h"
#include "support/ViewedTest.h"

namespace vpc::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// A view from above of points on a plane, ten units apart; a pixel is a tenth of a unit.
class PickCommandTest : public ViewedTest {
protected:
    PickCommandTest() : ViewedTest({plane()}) {}

    static std::vector<PointRecord> plane() {
        std::vector<PointRecord> points;
        for (int i = 0; i < 16; ++i)
            points.push_back({10.0 * (i % 4) + 0.125, 10.0 * (i / 4), -3.5,
                              static_cast<std::uint16_t>(16 * i), 200, 100, 0.25 + i});
        return points;
    }
    inline static const std::string camera =
        " --eye 20,20,96.5 --target 20,20,-3.5 --up 0,1,0 --field 100,100 ";
    static std::string at(double x, double y, double z, const std::string& more) {
        return "pick t.vpt" + camera + "--viewport 1000,1000 --at " + joined(x) + "," + joined(y) +
               "," + joined(z) + more;
    }
    /// The first points of a view are what can be picked in it.
    const PointRecord p = tree.pointsOf(0)[0];
    const std::string answer = joined(p.x, p.y, p.z) + "\n";
};

TEST_F(PickCommandTest, PicksThePointWithinABoxInPixels) {
    const std::string said = answer + "colour     " + std::to_string(p.red) +
                             " 200 100\nintensity  " + joined(p.intensity) + "\ndistance   ";
    // Half way up to the eye a perspective view shows the point half as far from its axis.
    EXPECT_THAT(run(at((p.x + 20) / 2, (p.y + 20) / 2, 46.5, " --perspective")).out,
                StartsWith(said));
    EXPECT_EQ(run(at(p.x + 0.125, p.y, 46.5, " --parallel")).out,
              said + "0.125 from the click's line\n");
    const auto found = [&](double offset, const std::string& box) {
        return run(at(p.x + offset, p.y, p.z, " --parallel" + box)).out.find(answer) == 0;
    };
    EXPECT_TRUE(found(0.24, "") && found(-0.24, " --box 5") && found(0.44, " --box 9"));
    EXPECT_FALSE(found(0.26, "") || found(0.46, " --box 9") || found(0.06, " --box 1"));
}

TEST_F(PickCommandTest, PicksThePixelOfThePicture) {
    struct Case {
        std::string options;
        int width, height;
        bool turned = false;
    };
    const std::string quarterTurn = " --matrix 0,-1,0,30,1,0,0,0,0,0,1,0,0,0,0,1";
    for (const auto& [options, width, height, turned] :
         {Case{"--perspective", 300, 200}, Case{"--parallel", 200, 300},
          Case{"--perspective --viewport 500,500", 640, 200}, Case{quarterTurn, 250, 250, true}}) {
        const double x = turned ? 30 - p.y : p.x, y = turned ? p.x : p.y;
        const double scale = std::min(width, height) / 100.0;
        const auto column = static_cast<std::size_t>(width / 2.0 + (x - 20) * scale);
        const auto row = static_cast<std::size_t>(height / 2.0 - (y - 20) * scale);
        const std::string view = camera + options + " --level 0 --size " + std::to_string(width) +
                                 "x" + std::to_string(height);
        expectDone("view t.vpt --image o.png" + view);
        EXPECT_EQ(Picture(read("o.png")).at(column, row),
                  Picture::Colour({static_cast<std::uint8_t>(p.red), 200, 100}));
        const std::string pick = "pick t.vpt --json" + view + " --pixel " + std::to_string(column) +
                                 "," + std::to_string(row);
        const auto json = nlohmann::json::parse(run(pick).out);
        EXPECT_EQ(json["point"], nlohmann::json({x, y, p.z})) << pick;
        EXPECT_EQ(json["colour"], nlohmann::json({p.red, 200, 100}));
        EXPECT_EQ(json["intensity"], p.intensity);
        EXPECT_LT(json["distanceFromLine"], 1 / scale);
        expectFailure(pick + " --clip-circle outside:" + joined(x) + "," + joined(y) + ",1", 1,
                      "no point is shown within");
    }
}

TEST_F(PickCommandTest, SaysWhatIsWrong) {
    expectFailure(at(5, 5, 0, " --parallel"), 1,
                  "no point is shown within the box of 5 pixels at 5,5,0");
    expectFailure(at(5, 5, 0, " --box 0"), 2, "");
    expectFailure("pick t.vpt", 2, "say where the click is");
    expectFailure("pick t.vpt --at 1,2", 2, "");
    expectFailure("pick t.vpt --at 1,2,3 --pixel 1,2", 2, "");
    expectFailure("pick t.vpt --at 1,2,3 --size 10x10", 2, "");
    expectFailure("pick t.vpt --pixel 10,9 --size 10x10", 2, "a column from 0 to 9");
    expectFailure("pick t.vpt --pixel 1.5,9", 2, "");
    expectFailure("pick t.vpt --pixel 1,2 --level 99", 2, "");
    expectFailure("pick none.vpt --at 1,2,3", 1, "");
}

}  // namespace
}  // namespace vpc::test
