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
    EXPECT_EQ(answer, json::parse(R"({"bounds": {"max": [4.0, 2.0, 2.0], "min": [0.0, 0.0, 0.0]},
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
         {"Tree_Octree", "6 Meters", "4 2 2", "5 (10 with the coarser levels)", "0.25",
          "255 254 253", "Stra\u00dfe.las", "0,0,0/1,0,0  [2 0 0] [4 2 2]"})
        EXPECT_THAT(text, testing::HasSubstr(part));
}

TEST_F(InfoCommandTest, RefusesWhatItCannotRead) {
    expectFailure("info none.vpt", 1, "'none.vpt' cannot be read");
    image.patch(image.nodes[3].members[9], 1ULL << 60);
    write("t.vpt", image.bytes);
    expectFailure("info t.vpt", 1, "ends within the record of node 0 of level 2");
}

}  // namespace
}  // namespace vpc::test
