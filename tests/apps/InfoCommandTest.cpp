#include <algorithm>

#include <nlohmann/json.hpp>

#include "support/ProgramRun.h"
#include "support/TreeImage.h"

namespace vpc::test {
namespace {

using nlohmann::json;

class InfoCommandTest : public ProgramTest {
protected:
    std::string info(const std::string& options = "") const {
        write("t.vpt", image.bytes);
        return run("info t.vpt" + options).out;
    }

    TreeImage image{{U"Stra\u00dfe.las"}};
};

TEST_F(InfoCommandTest, TellsEverything) {
    json answer = json::parse(info(" --json --nodes"));
    const json nodes = answer["nodes"];
    answer.erase("nodes");
    EXPECT_EQ(answer, json::parse(info(" --json")));
    EXPECT_EQ(answer, json::parse(R"({"bounds": {"max": [1.0, 1.0, 2.0], "min": [0.0, 1.0, 2.0]},
        "file": "t.vpt", "largestNodeCount": 5, "levels": [
            {"largestNode": 2, "level": 0, "nodes": 1, "points": 2, "recordBytes": 248},
            {"largestNode": 3, "level": 1, "nodes": 2, "points": 3, "recordBytes": 504},
            {"largestNode": 5, "level": 2, "nodes": 1, "points": 5, "recordBytes": 320}],
        "maxColour": [255, 254, 253], "maxIntensity": 99.5, "minimumDistance": 0.25,
        "pointRecordSize": 54, "points": 5, "recordBytes": 1072, "size": 1891,
        "sources": ["Straße.las"], "storedPoints": 10,
        "treeType": {"code": 0, "name": "Tree_Octree"}, "unit": {"code": 6, "name": "Meters"},
        "version": 9})"));
    ASSERT_EQ(nodes.size(), 4U);
    EXPECT_EQ(nodes[2], json::parse(R"({"bounds": {"max": [4.0, 2.0, 2.0], "min": [2.0, 0.0, 0.0]},
        "children": [0, 0, 0], "index": 1, "level": 1, "minimumDistance": 0.5,
        "path": [[0, 0, 0], [1, 0, 0]], "pointBlock": 1589, "points": 0, "recordPosition": 735})"));
    const std::string text = info(" --nodes");
    for (const char* part :
         {"Tree_Octree", "Meters (code 6)", "1 1 2", "5 (10 with the coarser levels)", "0.25",
          "255 254 253", "Stra\u00dfe.las", "0,0,0/1,0,0  [2 0 0] [4 2 2]"})
        EXPECT_THAT(text, testing::HasSubstr(part));
}

TEST_F(InfoCommandTest, TellsTheBoundsOfThePointsWithoutReadingThemAll) {
    // Corners at 0, at a power of two, of many digits, of a flat cloud, and those of a real scan.
    const char* scans[] = {"0 0 0\n1024 1023.9999 3\n512.5 100 2\n",
                           "0.1234567890123456 -77.000000000000014 1e-9\n"
                           "300.30000000000001 0.00000025 1.0000000000000002\n",
                           "457992.13 4649776.03 12.5\n458007.88 4649780 12.5\n",
                           "-3 -4 -5\n-3 -4 -5\n"};
    for (const std::string scan : scans) {
        write("a.pts", std::to_string(std::count(scan.begin(), scan.end(), '\n')) + "\n" + scan);
        expectDone("prepare --quiet -o t.vpt a.pts");
        const json quick = json::parse(run("info t.vpt --json").out);
        const json full = json::parse(run("info t.vpt --json --stats").out);
        EXPECT_EQ(quick["bounds"], full["bounds"]) << scan;
        for (const std::string axis : {"x", "y", "z"})
            EXPECT_EQ(full["statistics"][axis]["minimum"], full["bounds"]["min"][axis[0] - 'x']);
    }
    // Points that the bounds do not depend on may be damaged: nobody looks at them.
    expectDone("sample s.las --points 300000");
    for (const std::string tree : {"octree", "kd"}) {
        expectDone("prepare --quiet -o t.vpt --max-points 1000 s.las --tree " + tree);
        const json full = json::parse(run("info t.vpt --json --stats").out);
        TreeFile file = folder.tree();
        std::size_t within = 0;
        for (TreeNode& node : file.levels.back()) {
            bool touches = false;
            for (std::size_t axis = 0; axis < 2; ++axis)
                touches |= node.boxMin[axis] <= full["bounds"]["min"][axis] ||
                           node.boxMax[axis] >= full["bounds"]["max"][axis];
            if (touches || node.points.empty()) continue;
            ++within;
            node.points[0].x = -1e9;
        }
        EXPECT_GT(within, 10U);
        write("t.vpt", file.bytes());
        EXPECT_EQ(json::parse(run("info t.vpt --json").out)["bounds"], full["bounds"]) << tree;
    }
}

TEST_F(InfoCommandTest, SumsUpAllPoints) {
    // Two patches of 100 x 100 points, 0.5 apart, at the ends of a long strip.
    std::string scan = "20000\n";
    for (int i = 0; i < 20000; ++i) {
        const int x = i % 100 + (i < 10000 ? 0 : 2000), y = i / 100 % 100;
        const auto half = [](int n) { return std::to_string(n / 2) + (n % 2 == 0 ? " " : ".5 "); };
        scan += half(x) + half(y) + "7 " + std::to_string(i % 3) + " 10 20 " +
                (i < 5000 ? "40\n" : "0\n");
    }
    write("a.pts", scan);
    expectDone("prepare -o t.vpt --unit ft --max-points 2000 a.pts");
    const json answer = json::parse(run("info t.vpt --json --stats").out);
    const json& all = answer["statistics"];
    EXPECT_EQ(all["x"], json::parse(R"({"minimum": 0.0, "maximum": 1049.5, "mean": 524.75})"));
    EXPECT_EQ(all["z"], json::parse(R"({"minimum": 7.0, "maximum": 7.0, "mean": 7.0})"));
    EXPECT_EQ(all["blue"], json::parse(R"({"minimum": 0.0, "maximum": 40.0, "mean": 10.0})"));
    EXPECT_NEAR(all["coveredArea"], 5000.0, 500.0);
    EXPECT_NEAR(all["density"], 4.0, 0.4);
    EXPECT_NEAR(answer["levels"].back()["spacing"], 0.5, 0.03);
    const std::string text = run("info t.vpt --stats").out;
    for (const char* part : {"Feet (code 2)", "524.75", "points a square unit (unit: Feet)"})
        EXPECT_THAT(text, testing::HasSubstr(part));
}

TEST_F(InfoCommandTest, RefusesWhatItCannotRead) {
    expectFailure("info none.vpt", 1, "'none.vpt' cannot be read");
    image.patch(image.nodes[3].members[9], 1ULL << 60);
    write("t.vpt", image.bytes);
    expectFailure("info t.vpt", 1, "ends within the record of node 0 of level 2");
    write("t.vpt", TreeImage({}).bytes.substr(0, 1700));
    expectFailure("info t.vpt", 1, "ends before the points of node 0 of level 2");
}

}  // namespace
}  // namespace vpc::test
