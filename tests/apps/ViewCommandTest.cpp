#include <cmath>

#include <nlohmann/json.hpp>

#include "support/Picture.h"
#include "support/ViewedTest.h"

namespace vpc::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class ViewCommandTest : public ViewedTest {
protected:
    ViewCommandTest() : ViewedTest({makeCloud({CloudShape::Uniform, 4000})}) {}

    json report(const std::string& options) const {
        return json::parse(run("view t.vpt --report " + options).out);
    }
};

TEST_F(ViewCommandTest, CutsAsTheOptionsSay) {
    // A quarter turn about x and a shift: (x, y, z) becomes (x + 1000, -z - 500, y + 20).
    const std::string options =
        "--matrix 1,0,0,1000,0,0,-1,-500,0,1,0,20,0,0,0,1 --parallel --section "
        "1005,-510,20,1,-2,0.5 "
        "--section=1080,0,0,-1,0,0 --clip-circle outside:1050,-510,5 --clip-circle 1040,-510,4e1 "
        "--clip-polygon outside:1000,-530;1100,-540;1000,-540";
    std::vector<ShownPoint> expected;
    for (const ShownPoint& p : stored()) {
        const double x = p.at[0], y = -p.at[2], z = p.at[1];
        if (x - 5 - 2 * (y + 10) + 0.5 * z > 0 && x < 80 && std::hypot(x - 50, y + 10) > 5 &&
            std::hypot(x - 40, y + 10) < 40 && y > -30 - x / 10)
            expected.push_back({{x + 1000, y - 500, z + 20}, p.colour, p.size});
    }
    EXPECT_EQ(shown(options), expected);
    EXPECT_GT(expected.size(), 30U);
    EXPECT_EQ(shown("--matrix 1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1 --stylization SCAN"), stored());
    // A camera that looks away, and one that has no direction, see nothing.
    EXPECT_TRUE(shown("--eye 50,35,100 --target 50,35,200").empty());
    EXPECT_TRUE(shown("--eye 50,35,100 --target 50,35,100").empty());
    const auto spectrum = shown("--stylization elevation --scheme sPECTRUM");
    EXPECT_EQ(spectrum, shown("--stylization elevation"));
    EXPECT_NE(spectrum, shown("--stylization elevation --scheme earth"));
    EXPECT_NE(spectrum, shown("--stylization intensity"));
}

TEST_F(ViewCommandTest, ReportsWhatTheViewCameTo) {
    std::vector<std::size_t> pointsOf;
    for (std::size_t level = 0; level < tree.levels.size(); ++level)
        pointsOf.push_back(tree.pointsOf(level).size());
    const json low = report("--budget 3000 --density low");
    EXPECT_EQ(low["capacity"], 3000);
    EXPECT_EQ(pointsOf[low["selectedLevel"]], low["visiblePoints"]);
    EXPECT_LT(low["visiblePoints"], 600);
    const auto& nodes = tree.levels.back();
    const json answer = report("");
    EXPECT_EQ(answer["visibleNodes"], std::count_if(nodes.begin(), nodes.end(), [](auto& node) {
                  return node.pointCount > 0;
              }));
    EXPECT_EQ(answer["visiblePoints"], 4000);
    EXPECT_EQ(answer["totalPoints"], 4000);
    EXPECT_EQ(answer["capacity"], 5000000);
    EXPECT_GT(answer["updateSeconds"], 0.0);
    const TreeNode& root = tree.levels[0][0];
    for (const std::size_t axis : {0U, 1U, 2U}) {
        const double side = root.boxMax[axis] - root.boxMin[axis];
        EXPECT_NEAR(answer["bounds"]["min"][axis], root.boxMin[axis] - 0.025 * side, 0.001 * side);
        EXPECT_NEAR(answer["bounds"]["max"][axis], root.boxMax[axis] + 0.025 * side, 0.001 * side);
    }
    json levels;
    for (std::size_t level = 0; level < pointsOf.size(); ++level)
        levels.push_back(
            {{"level", level}, {"nodes", tree.levels[level].size()}, {"points", pointsOf[level]}});
    EXPECT_EQ(answer["levels"], levels);
    const std::string words = run("view t.vpt --field 1000,1000").out;
    EXPECT_THAT(words, HasSubstr("visible       4000 points of "));
    EXPECT_THAT(words, HasSubstr("of " + std::to_string(pointsOf.size()) + " (0 is the"));
}

/// Three points. The red one is behind the blue one as seen from above.
class ViewPictureTest : public ViewedTest {
protected:
    ViewPictureTest()
        : ViewedTest({{{0, 0, -9, 250, 0, 0}, {0, 0, 3, 0, 0, 250}, {20, 5, 0.25, 0, 250, 0}},
                      {1, 0, 0, 0, 1, 0, 0, 0, 1, 100, 200, 0}}) {}
    /// From `height` the field is a hundred units wide at the height of 0.
    Picture draw(int height, const std::string& options) const {
        expectDone(
            "view t.vpt --image o.png --shading none --no-legend --target 100,200,0 --up 0,1,0 "
            "--field 100,100 --eye 100,200," +
            std::to_string(height) + " " + options);
        return Picture(read("o.png"));
    }

    const Picture::Colour red = {250, 0, 0}, green = {0, 250, 0}, blue = {0, 0, 250};
};

TEST_F(ViewPictureTest, NearerPointsHideOthersAndSizesArePixels) {
    for (const std::string projection : {"--perspective", "--parallel"}) {
        Picture above = draw(60, "--point-size 3 --size 200x200 " + projection);
        EXPECT_EQ(above.count(blue), 9U) << "three pixels wide and high, in front";
        EXPECT_EQ(above.at(100, 100), blue);
        EXPECT_EQ(above.count(red), 0U) << "hidden";
        EXPECT_EQ(above.count(green), 9U);
        const double scale = projection == "--parallel" ? 2.0 : 2.0 * 60 / 59.75;
        EXPECT_NEAR(above.middleColumn(), 100 + 20 * scale, 1);
        EXPECT_NEAR(above.middleRow(), 100 - 5 * scale, 1);
        Picture below = draw(-60, "--point-size 1 --size 200x200 " + projection);
        EXPECT_EQ(below.count(red), 1U);
        EXPECT_EQ(below.count(blue), 0U) << "hidden";
    }
    // A picture of another shape keeps the proportions.
    Picture wide =
        draw(60, "--point-size 3 --viewport 500,500 --size 400x200 --parallel --background WHITE");
    EXPECT_EQ(wide.width, 400U);
    ASSERT_EQ(wide.count(green), 9U);
    EXPECT_NEAR(wide.middleColumn(), 200 + 20 * 2, 1);
    EXPECT_NEAR(wide.middleRow(), 100 - 5 * 2, 1);
    EXPECT_EQ(wide.count({255, 255, 255}), 400U * 200U - 18U);
}

/// What the points of a scan are coloured by in a picture.
class ColourlessPictureTest : public ProgramTest {
protected:
    /// \param change makes a point of the scan from one with random colour and intensity
    template <class Change>
    std::string colouredBy(const Change& change, const std::string& options = "") const {
        PtxScan content{makeCloud({CloudShape::Uniform, 500})};
        for (PointRecord& point : content.points) change(point);
        folder.prepareTree(content, {6, false, 100, 10});
        const std::string said = run("view t.vpt --image o.png --size 300x200 " + options).out;
        return said.substr(std::min(said.rfind(' '), said.size() - 1) + 1);
    }
};

TEST_F(ColourlessPictureTest, ShowsIntensityOrElseElevation) {
    const auto black = [](PointRecord& p) { p.red = p.green = p.blue = 0; };
    const auto grey = [](PointRecord& p) { p.green = p.blue = p.red; };
    const auto dull = [](PointRecord& p) { p.intensity = 0.5; };
    const auto blackAndDull = [&](PointRecord& p) { black(p), dull(p); };
    EXPECT_EQ(colouredBy([](PointRecord&) {}), "scan\n");
    EXPECT_EQ(colouredBy(black), "intensity\n");
    EXPECT_EQ(colouredBy(grey), "intensity\n");
    EXPECT_EQ(colouredBy(blackAndDull), "elevation\n");
    EXPECT_EQ(colouredBy([&](PointRecord& p) { grey(p), dull(p); }), "scan\n");
    EXPECT_EQ(colouredBy(black, "--stylization scan"), "scan\n");
    EXPECT_EQ(colouredBy(black, "--stylization elevation --section 0,0,9,0,0,1"), "elevation\n");
    EXPECT_EQ(colouredBy(dull, "--stylization intensity"), "brightness\n");
    // The ramp, its range and the legend.
    const std::string plain = "--section 0,0,9,0,0,1 --shading none --scheme Blues ";
    colouredBy(blackAndDull, plain + "--no-legend --range 500,600");
    Picture picture(read("o.png"));
    const Picture::Colour lowest = {0, 0, 38}, slate = {44, 54, 68};
    EXPECT_EQ(picture.count(lowest) + picture.count(slate), 300U * 200U);
    EXPECT_GT(picture.count(lowest), 3000U);
    // The camera fits what a cut leaves, a thin slab here.
    colouredBy(blackAndDull, "--section 95,0,0,1,0,0 --no-legend --shading none");
    EXPECT_LT(Picture(read("o.png")).count(slate), 300U * 200U * 9 / 10);
    colouredBy(blackAndDull, plain + "--range 500,600");
    EXPECT_LT(Picture(read("o.png")).count(lowest), picture.count(lowest));
}

TEST_F(ViewCommandTest, WritesTheDiagnostics) {
    expectDone("view t.vpt --eye 10,20,300 --target 50,35,0 --diagnostics d/e");
    EXPECT_THAT(read("d/e/CameraParameters.txt"),
                HasSubstr("Camera position: (10.000000, 20.000000, 300.000000)"));
    EXPECT_THAT(read("d/e/CameraViewFrustum.ply"), HasSubstr("element vertex "));
}

TEST_F(ViewCommandTest, SaysWhatIsWrong) {
    std::istringstream wrong(
        "--eye 1,2|--eye 1,2,nan|--target 1;2;3|--up 0,0,0|--field -1,5|--viewport 0,5|"
        "--viewport 100000x5|--perspective --parallel|--budget 50|--budget many|--density high|"
        "--stylization none|--scheme Pink|--section 0,0,0,0,0,0|--section 0,0,0,1,0|"
        "--clip-circle 0,0,0|--clip-circle inside:0,0,1|--clip-polygon 0,0;1,1|"
        "--clip-polygon 0,0;1,1;2|--image o.jpg|--image .png|--image o.png --points o.png|"
        "--image o.png --points ./o.png|--points o.las|--point-size 3|--image o.png --point-size 0|"
        "--image o.png --shading much|--image o.png --range 2,1|--image o.png --background 1,2,256|"
        "--matrix 1,0,0,0,0,1,0,0,0,0,1,0,0,0,0|"
        "--matrix 2,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1|--size 100x100|--image o.png --size 100|"
        "--colour red");
    for (std::string options; std::getline(wrong, options, '|');)
        expectFailure("view t.vpt " + options, 2, "");
    expectFailure("view", 2, "");
    expectFailure("view none.vpt", 1, "'none.vpt' cannot be read");
    expectFailure("view t.vpt --image none/o.png", 1, "'none/o.png' cannot be written");
    expectFailure("view t.vpt --points t.vpt", 1, "is the tree file itself");
    expectFailure("view t.vpt --diagnostics t.ptx", 1, "");
    const std::string whole = read("t.vpt");
    write("b.vpt", whole.substr(0, 1000));
    expectFailure("view b.vpt", 1, "in level 1, more than it has room for; see vpc verify");
    write("b.vpt", '\x08' + whole.substr(1));
    expectFailure("view b.vpt", 1, "b.vpt vpt version is 8 but software expects version 9");
}

}  // namespace
}  // namespace vpc::test
