#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/ProgramRun.h"
#include "support/TreeImage.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using vpc::test::ProgramResult;
using vpc::test::TempFolder;
using vpc::test::TreeImage;

class InfoCommandTest : public testing::Test {
protected:
    ProgramResult info(const std::vector<std::string>& options = {}) const {
        vpc::test::writeBytes(folder.file("t.vpt"), image.bytes);
        std::vector<std::string> arguments = {"info", "t.vpt"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return vpc::test::runProgram(arguments, folder.path());
    }

    TempFolder folder;
    TreeImage image{{U"Stra\u00dfe.las"}};
};

TEST_F(InfoCommandTest, TellsEverythingInJson) {
    const json answer = json::parse(info({"--json", "--nodes"}).out);
    EXPECT_EQ(answer["version"], 9);
    EXPECT_EQ(answer["treeType"], json({{"code", 0}, {"name", "Tree_Octree"}}));
    EXPECT_EQ(answer["unit"], json({{"code", 6}, {"name", "Meters"}}));
    EXPECT_EQ(answer["bounds"], json({{"min", {0.0, 0.0, 0.0}}, {"max", {4.0, 2.0, 2.0}}}));
    EXPECT_EQ(answer["points"], 5);
    EXPECT_EQ(answer["storedPoints"], 10);
    EXPECT_EQ(answer["minimumDistance"], 0.25);
    EXPECT_EQ(answer["maxColour"], json({255, 254, 253}));
    EXPECT_EQ(answer["maxIntensity"], 99.5);
    EXPECT_EQ(answer["sources"], json::array({"Stra\u00dfe.las"}));
    EXPECT_EQ(answer["size"], image.bytes.size());
    EXPECT_EQ(answer["recordBytes"], image.pointData() - image.firstRecord());
    ASSERT_EQ(answer["levels"].size(), 3U);
    EXPECT_EQ(answer["levels"][1]["nodes"], 2);
    EXPECT_EQ(answer["levels"][1]["points"], 3);
    EXPECT_EQ(answer["levels"][2]["largestNode"], 5);
    ASSERT_EQ(answer["nodes"].size(), image.nodes.size());
    for (std::size_t n = 0; n < image.nodes.size(); ++n) {
        EXPECT_EQ(answer["nodes"][n]["points"], image.nodes[n].points);
        EXPECT_EQ(answer["nodes"][n]["recordPosition"], image.nodes[n].members[0]);
        EXPECT_EQ(answer["nodes"][n]["bounds"]["max"], json(image.nodes[n].high));
    }
    EXPECT_EQ(answer["nodes"][2]["path"].dump(), "[[0,0,0],[1,0,0]]");
    EXPECT_FALSE(json::parse(info({"--json"}).out).contains("nodes"));
}

TEST_F(InfoCommandTest, TellsTheSameInText) {
    const std::string text = info().out;
    for (const char* part : {"Tree_Octree", "6 Meters", "4 2 2", "5 (10 with the coarser levels)",
                             "0.25", "255 254 253", "Stra\u00dfe.las"})
        EXPECT_THAT(text, HasSubstr(part));
    EXPECT_THAT(info({"--nodes"}).out, HasSubstr("0,0,0/1,0,0  [2 0 0] [4 2 2]"));
}

TEST_F(InfoCommandTest, RefusesWhatItCannotRead) {
    EXPECT_THAT(vpc::test::runProgram({"info", "none.vpt"}, folder.path()).err,
                HasSubstr("'none.vpt' cannot be read"));
    EXPECT_THAT(vpc::test::runProgram({"info", "t.las"}, folder.path()).err,
                HasSubstr("not named '.vpt'"));
    image.patch(image.nodes[3].members[9], 1ULL << 60);
    EXPECT_THAT(info().err, HasSubstr("a node record is missing"));
    image.bytes.resize(130);
    EXPECT_THAT(info().err, HasSubstr("'t.vpt' is too short"));
    EXPECT_EQ(info().status, 1);
    image.patch(0, 8ULL);
    EXPECT_THAT(info().err, HasSubstr("version 8 and"));
}

}  // namespace
