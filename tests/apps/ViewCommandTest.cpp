#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>

#include <nlohmann/json.hpp>

#include "support/Picture.h"
#include "support/ViewedTree.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using vpc::test::makeCloud;
using vpc::test::Picture;
using vpc::test::PointRecord;
using vpc::test::ProgramResult;
using vpc::test::ShownPoint;
using vpc::test::TreeNode;
using vpc::test::ViewedTree;
using Strings = std::vector<std::string>;
using Keep = std::function<bool(double, double, double)>;

bool everything(const PointRecord&) {
    return true;
}

/// Whether a point lies in the polygon, by the angles under which it sees the edges.
bool windsAround(const std::vector<std::array<double, 2>>& corners, double x, double y) {
    double angle = 0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const auto& a = corners[i];
        const auto& b = corners[(i + 1) % corners.size()];
        const double turn = std::atan2(b[1] - y, b[0] - x) - std::atan2(a[1] - y, a[0] - x);
        angle += std::remainder(turn, 2 * M_PI);
    }
    return std::abs(angle) > M_PI;
}

class ViewCommandTest : public testing::Test {
protected:
    std::size_t deepest() const { return viewed.tree().levels.size() - 1; }
    json report(Strings options) const {
        options.emplace_back("--report");
        const ProgramResult result = viewed.view(options);
        EXPECT_EQ(result.status, 0) << result.err;
        return json::parse(result.out);
    }

    const ViewedTree viewed{makeCloud({vpc::test::CloudShape::Uniform, 4000})};
};

TEST_F(ViewCommandTest, ShowsEveryPointToTheLastBit) {
    ASSERT_GE(deepest(), 2U);
    EXPECT_EQ(viewed.shown({}), viewed.stored(deepest(), everything));
    EXPECT_EQ(viewed.shown({"--parallel", "--stylization", "SCAN"}),
              viewed.stored(deepest(), everything));
    // The program's numbers read "x y z r g b size"; a size of one pixel has no fraction.
    EXPECT_THAT(viewed.read("shown.txt"), testing::ContainsRegex("^[0-9.]+ [0-9.]+ [0-9.]+ "));
    EXPECT_THAT(viewed.read("shown.txt"), HasSubstr(" 1\n"));
}

TEST_F(ViewCommandTest, CutsAsBruteForceDoes) {
    const std::vector<std::array<double, 2>> bow = {
        {10, 10}, {90, 15}, {40, 30}, {85, 60}, {5, 66}};
    const std::string bowText = "10,10;90,15;40,30;85,60;5,66";
    struct Case {
        Strings options;
        Keep keep;
    };
    const auto inCircle = [](double x, double y, double) {
        return std::hypot(x - 50, y - 30) < 25;
    };
    const std::vector<Case> cases = {
        {{"--section", "0,0,20,0,0,1"}, [](double, double, double z) { return z > 20; }},
        {{"--section", "50,35,20,1,-2,0.5", "--section=60,0,0,-1,0,0"},
         [](double x, double y, double z) {
             return (x - 50) - 2 * (y - 35) + 0.5 * (z - 20) > 0 && x < 60;
         }},
        {{"--clip-circle", "50,30,25"}, inCircle},
        {{"--clip-circle", "outside:50,30,2.5e1"},
         [&](double x, double y, double z) { return !inCircle(x, y, z); }},
        {{"--clip-polygon", bowText},
         [&](double x, double y, double) { return windsAround(bow, x, y); }},
        {{"--clip-polygon", "outside:" + bowText, "--clip-circle", "50,30,25", "--section",
          "0,0,30,0,0,-1"},
         [&](double x, double y, double z) {
             return !windsAround(bow, x, y) && inCircle(x, y, z) && z < 30;
         }},
        {{"--clip-circle", "10,10,5", "--clip-circle", "90,60,5"},
         [](double, double, double) { return false; }}};
    for (const Case& c : cases) {
        const auto expected =
            viewed.stored(deepest(), [&](const PointRecord& p) { return c.keep(p.x, p.y, p.z); });
        EXPECT_EQ(viewed.shown(c.options), expected) << c.options[1];
        if (&c == &cases.back()) continue;
        EXPECT_GT(expected.size(), 300U) << "the case tells something";
        EXPECT_LT(expected.size(), 3700U);
    }
}

TEST_F(ViewCommandTest, AMatrixMovesThePointsAndTheCutsStayInTheWorld) {
    // A quarter turn about x and a shift: (x, y, z) becomes (x + 1000, -z - 500, y + 20).
    const Strings quarterTurn = {"--matrix", "1,0,0,1000,0,0,-1,-500,0,1,0,20,0,0,0,1"};
    const Strings inWords = {"--matrix", "1", "0", "0",  "1000", "0", "0", "-1", "-500",
                             "0",        "1", "0", "20", "0",    "0", "0", "1"};
    const auto moved = [&](const Keep& keep) {
        std::vector<ShownPoint> expected;
        for (ShownPoint p : viewed.stored(deepest(), everything)) {
            p.at = {p.at[0] + 1000, -p.at[2] - 500, p.at[1] + 20};
            if (keep(p.at[0], p.at[1], p.at[2])) expected.push_back(p);
        }
        return expected;
    };
    const auto with = [](Strings options, const Strings& more) {
        options.insert(options.end(), more.begin(), more.end());
        return options;
    };
    EXPECT_EQ(viewed.shown(quarterTurn), moved([](double, double, double) { return true; }));
    EXPECT_EQ(viewed.shown(with(inWords, {"--section", "1030,0,0,1,0,0"})),
              moved([](double x, double, double) { return x > 1030; }));
    EXPECT_EQ(viewed.shown(with(quarterTurn, {"--section", "0,0,50,0,0,-1"})),
              moved([](double, double, double z) { return z < 50; }));
    EXPECT_EQ(viewed.shown(with(quarterTurn, {"--clip-circle", "1050,-520,18"})),
              moved([](double x, double y, double) { return std::hypot(x - 1050, y + 520) < 18; }));
    EXPECT_EQ(viewed.shown(
                  with(quarterTurn, {"--clip-polygon", "outside:1000,-530;1040,-530;1040,-510"})),
              moved([](double x, double y, double) {
                  return !windsAround({{1000, -530}, {1040, -530}, {1040, -510}}, x, y);
              }));
}

TEST_F(ViewCommandTest, ShowsTheNodesThatTheFieldMeets) {
    const auto tree = viewed.tree();
    std::vector<ShownPoint> expected;
    std::size_t nodes = 0;
    for (const TreeNode& node : tree.levels.back()) {
        if (node.boxMax[0] < 20 || node.boxMin[0] > 44 || node.boxMax[1] < 30 ||
            node.boxMin[1] > 42)
            continue;
        ++nodes;
        for (const PointRecord& p : node.points)
            expected.push_back({{p.x, p.y, p.z}, {p.red, p.green, p.blue}, 1.0});
    }
    const Strings fromAbove = {"--eye",      "32,36,400",  "--target", "32,36,20",
                               "--up",       "0,1,0",      "--field",  "24,12",
                               "--parallel", "--viewport", "800,400"};
    EXPECT_EQ(viewed.shown(fromAbove), expected);
    const json answer = report(fromAbove);
    EXPECT_EQ(answer["visibleNodes"], nodes);
    EXPECT_LT(nodes, tree.levels.back().size() / 2);
    // A camera that looks away, and one that has no direction, see nothing.
    EXPECT_TRUE(viewed.shown({"--eye", "50,35,100", "--target", "50,35,200"}).empty());
    EXPECT_TRUE(viewed.shown({"--eye", "50,35,100", "--target", "50,35,100"}).empty());
}

TEST_F(ViewCommandTest, KeepsToTheBudget) {
    const auto tree = viewed.tree();
    const auto pointsOf = [&](std::size_t level) {
        return std::accumulate(
            tree.levels[level].begin(), tree.levels[level].end(), std::size_t{0},
            [](std::size_t sum, const TreeNode& node) { return sum + node.points.size(); });
    };
    for (const std::size_t budget : {60, 200, 1000, 3000, 4000, 4002, 20000}) {
        for (const std::string density : {"full", "low"}) {
            const std::size_t limit = density == "low" ? budget / 5 : budget - 1;
            std::size_t level = 0;
            for (std::size_t l = 0; l < tree.levels.size() && pointsOf(l) < limit; ++l) level = l;
            const json answer = report({"--budget", std::to_string(budget), "--density", density});
            EXPECT_EQ(answer["selectedLevel"], level) << budget << density;
            EXPECT_EQ(answer["capacity"], budget);
            EXPECT_LT(answer["visiblePoints"], budget);
        }
    }
}

TEST_F(ViewCommandTest, ReportsWhatTheViewCameTo) {
    const auto tree = viewed.tree();
    const json answer = report({});
    EXPECT_EQ(answer["visiblePoints"], 4000);
    EXPECT_EQ(answer["totalPoints"], 4000);
    EXPECT_EQ(answer["selectedLevel"], deepest());
    EXPECT_EQ(answer["capacity"], 5000000);
    EXPECT_GT(answer["updateSeconds"], 0.0);
    const auto filled = std::count_if(tree.levels.back().begin(), tree.levels.back().end(),
                                      [](const TreeNode& node) { return node.pointCount > 0; });
    EXPECT_EQ(answer["visibleNodes"], filled);
    for (const std::size_t axis : {0U, 1U, 2U}) {
        const TreeNode& root = tree.levels[0][0];
        const double side = root.boxMax[axis] - root.boxMin[axis];
        EXPECT_NEAR(answer["bounds"]["min"][axis], root.boxMin[axis] - 0.025 * side, 0.001 * side);
        EXPECT_NEAR(answer["bounds"]["max"][axis], root.boxMax[axis] + 0.025 * side, 0.001 * side);
    }
    ASSERT_EQ(answer["levels"].size(), tree.levels.size());
    for (std::size_t level = 0; level < tree.levels.size(); ++level) {
        EXPECT_EQ(answer["levels"][level]["nodes"], tree.levels[level].size());
        EXPECT_EQ(answer["levels"][level]["level"], level);
    }
    EXPECT_EQ(answer["levels"].back()["points"], 4000);

    const std::string words = viewed.view({"--field", "1000,1000"}).out;
    EXPECT_THAT(words, HasSubstr("visible       4000 points of "));
    EXPECT_THAT(words, HasSubstr("of " + std::to_string(tree.levels.size()) + " (0 is the"));
}

TEST_F(ViewCommandTest, ColoursByElevationAndIntensity) {
    const auto plain = viewed.stored(deepest(), everything);
    const auto byElevation = viewed.shown({"--stylization", "elevation", "--scheme", "gRAY"});
    const auto byIntensity = viewed.shown({"--stylization", "intensity", "--scheme", "Gray"});
    const auto luminance = [](const ShownPoint& p) {
        return 0.2125 * p.colour[0] + 0.7154 * p.colour[1] + 0.0721 * p.colour[2];
    };
    const auto height = [](const ShownPoint& p) { return p.at[2]; };
    const auto check = [&](const auto& shown, const auto& value) {
        const auto [low, high] =
            std::minmax_element(plain.begin(), plain.end(),
                                [&](const auto& a, const auto& b) { return value(a) < value(b); });
        ASSERT_EQ(shown.size(), plain.size());
        for (std::size_t i = 0; i < plain.size(); ++i) {
            const double grey =
                (value(plain[i]) - value(*low)) * 255 / (value(*high) - value(*low));
            ASSERT_NEAR(shown[i].colour[0], grey - 0.5, 0.5 + 1e-9);
            ASSERT_EQ(shown[i].colour[0], shown[i].colour[2]);
        }
    };
    check(byElevation, height);
    check(byIntensity, luminance);
    // Without a scheme it is Spectrum, from blue to red.
    const auto spectrum = viewed.shown({"--stylization", "elevation"});
    EXPECT_EQ(spectrum, viewed.shown({"--stylization", "elevation", "--scheme", "Spectrum"}));
    EXPECT_NE(spectrum, viewed.shown({"--stylization", "elevation", "--scheme", "earth"}));
}

TEST_F(ViewCommandTest, DrawsTheWholeCloudIntoThePicture) {
    for (const std::string projection : {"--perspective", "--parallel"}) {
        const ProgramResult result = viewed.view(
            {"--image", "o.png", "--size", "300x200", projection, "--stylization", "elevation"});
        EXPECT_EQ(result.out, "o.png: 300 x 200 pixels of 4000 points\n") << result.err;
        Picture picture(viewed.read("o.png"));
        ASSERT_EQ(picture.width, 300U);
        ASSERT_EQ(picture.height, 200U);
        const Picture::Colour background = picture.at(0, 0);
        const std::size_t empty = picture.count(background);
        EXPECT_GT(empty, 5000U);
        EXPECT_LT(empty, 58500U) << "there are points";
        // The rim is empty, and close to it there are points.
        std::size_t left = 300, right = 0, top = 200, bottom = 0;
        for (std::size_t row = 0; row < 200; ++row) {
            for (std::size_t column = 0; column < 300; ++column) {
                if (picture.at(column, row) == background) continue;
                left = std::min(left, column), right = std::max(right, column);
                top = std::min(top, row), bottom = std::max(bottom, row);
            }
        }
        EXPECT_TRUE(left > 0 && right < 299 && top > 0 && bottom < 199);
        EXPECT_TRUE(right - left > 260 || bottom - top > 160) << "it fills the picture";
        EXPECT_NEAR(static_cast<double>(left + right) / 2, 150, 15);
        EXPECT_NEAR(static_cast<double>(top + bottom) / 2, 100, 15);
    }
}

/// A scan of three points: the size of each is its distance from the scanner, which stands at
/// (100, 200, 0). The red one is behind the blue one as seen from above, and larger.
class ViewPictureTest : public testing::Test {
protected:
    ViewPictureTest() {
        const auto point = [](double x, double y, double z, Picture::Colour colour) {
            PointRecord p;
            p.x = x, p.y = y, p.z = z;
            p.red = colour[0], p.green = colour[1], p.blue = colour[2];
            return p;
        };
        vpc::test::PtxScan scan;
        scan.transform = {1, 0, 0, 0, 1, 0, 0, 0, 1, 100, 200, 0};
        scan.points = {point(0, 0, -9, red), point(0, 0, 3, blue), point(20, 5, 0.25, green)};
        vpc::test::writePtx(work.scan("t.ptx"), {scan});
        EXPECT_TRUE(
            vpc::test::prepare({work.scan("t.ptx")}, work.work(), work.scan("t.vpt")).success);
    }
    Picture draw(Strings options) const {
        options.insert(options.begin(), {"view", "t.vpt", "--image", "o.png"});
        const ProgramResult result = vpc::test::runProgram(options, work.folder.path());
        EXPECT_EQ(result.status, 0) << result.err;
        return Picture(vpc::test::readBytes(work.scan("o.png")));
    }

    const vpc::test::PrepareFolder work;
    const Picture::Colour red = {250, 0, 0}, green = {0, 250, 0}, blue = {0, 0, 250};
};

TEST_F(ViewPictureTest, NearerPointsHideOthersAndSizesArePixels) {
    for (const std::string projection : {"--perspective", "--parallel"}) {
        // From above the field is a hundred units wide at the height of 0, and a unit two pixels.
        Picture above = draw({"--eye", "100,200,60", "--target", "100,200,0", "--up", "0,1,0",
                              "--field", "100,100", "--size", "200x200", projection});
        EXPECT_EQ(above.count(blue), 9U) << "a square of three pixels in front";
        EXPECT_EQ(above.at(100, 100), blue);
        EXPECT_EQ(above.count(red), 81U - 9U) << "the rest of nine";
        EXPECT_EQ(above.count(green), 21U * 21U);
        const double scale = projection == "--parallel" ? 2.0 : 2.0 * 60 / 59.75;
        EXPECT_NEAR(static_cast<double>(above.left + above.right) / 2, 100 + 20 * scale, 1);
        EXPECT_NEAR(static_cast<double>(above.top + above.bottom) / 2, 100 - 5 * scale, 1);

        Picture below = draw({"--eye", "100,200,-60", "--target", "100,200,0", "--up", "0,1,0",
                              "--field", "100,100", "--size", "200x200", projection});
        EXPECT_EQ(below.count(red), 81U);
        EXPECT_EQ(below.count(blue), 0U) << "hidden";
    }
}

TEST_F(ViewPictureTest, APictureOfAnotherShapeKeepsTheProportions) {
    Picture wide = draw({"--eye", "100,200,60", "--target", "100,200,0", "--up", "0,1,0", "--field",
                         "100,100", "--viewport", "500,500", "--size", "400x200", "--parallel"});
    EXPECT_EQ(wide.width, 400U);
    ASSERT_EQ(wide.count(green), 21U * 21U);
    EXPECT_NEAR(static_cast<double>(wide.left + wide.right) / 2, 200 + 20 * 2, 1);
    EXPECT_NEAR(static_cast<double>(wide.top + wide.bottom) / 2, 100 - 5 * 2, 1);
}

TEST_F(ViewCommandTest, WritesTheDiagnostics) {
    const ProgramResult result =
        viewed.view({"--eye", "10,20,300", "--target", "50,35,0", "--diagnostics", "d/e"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(viewed.read("d/e/CameraParameters.txt"),
                HasSubstr("Camera position: (10.000000, 20.000000, 300.000000)"));
    for (const char* name : {"DataBoundaries.ply", "CameraViewFrustum.ply", "InViewFrustum.ply"})
        EXPECT_THAT(viewed.read(std::string("d/e/") + name), HasSubstr("element vertex ")) << name;
    vpc::test::writeBytes(viewed.work.scan("file"), "");
    EXPECT_EQ(viewed.view({"--diagnostics", "file"}).status, 1);
}

TEST_F(ViewCommandTest, WrongUsageGivesStatus2) {
    const std::vector<Strings> wrong = {
        {"--eye", "1,2"},
        {"--eye", "1,2,nan"},
        {"--target", "1;2;3"},
        {"--up", "0,0,0"},
        {"--field", "-1,5"},
        {"--viewport", "0,5"},
        {"--viewport", "100000x5"},
        {"--perspective", "--parallel"},
        {"--budget", "50"},
        {"--budget", "many"},
        {"--density", "high"},
        {"--stylization", "none"},
        {"--scheme", "Pink"},
        {"--section", "0,0,0,0,0,0"},
        {"--section", "0,0,0,1,0"},
        {"--clip-circle", "0,0,0"},
        {"--clip-circle", "inside:0,0,1"},
        {"--clip-polygon", "0,0;1,1"},
        {"--clip-polygon", "0,0;1,1;2"},
        {"--matrix", "1,0,0,0,0,1,0,0,0,0,1,0,0,0,0"},
        {"--matrix", "2,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1"},
        {"--size", "100x100"},
        {"--image", "o.png", "--size", "100"},
        {"--colour", "red"},
    };
    for (const Strings& options : wrong) {
        const ProgramResult result = viewed.view(options);
        EXPECT_EQ(result.status, 2) << options[0] << " " << options[1];
        EXPECT_FALSE(result.err.empty());
    }
    EXPECT_EQ(viewed.run({"view"}).status, 2);
}

TEST_F(ViewCommandTest, SaysWhatIsWrongWithAFile) {
    EXPECT_THAT(viewed.run({"view", "none.vpt"}).err, HasSubstr("'none.vpt' cannot be read"));
    EXPECT_THAT(viewed.view({"--image", "none/o.png"}).err,
                HasSubstr("'none/o.png' cannot be written"));
    EXPECT_THAT(viewed.view({"--points", "t.vpt"}).err, HasSubstr("is the tree file itself"));
    const std::string whole = viewed.read("t.vpt");
    const auto fail = [&](const std::string& bytes, const char* text) {
        vpc::test::writeBytes(viewed.work.scan("b.vpt"), bytes);
        const ProgramResult result = viewed.run({"view", "b.vpt"});
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.err, HasSubstr(text));
    };
    fail(whole.substr(0, 1000), "'b.vpt' cannot be loaded: it is damaged");
    fail('\x08' + whole.substr(1), "b.vpt vpt version is 8 but software expects version 9");
}

}  // namespace
