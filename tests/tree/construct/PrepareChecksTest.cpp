#include "tree/construct/PrepareChecks.h"

#include <gmock/gmock.h>

#include "support/TempFolder.h"

namespace vpc::test {
namespace {

namespace fs = std::filesystem;
using Kind = PrepareFinding::Kind;

// The program's tests hold each sentence; these are about what a host gets.
class PrepareChecksTest : public testing::Test {
protected:
    PrepareChecksTest() { writeBytes(folder.file("a.pts"), "2\n0 0 0\n1 2 3\n"); }

    /// The kinds and files of what is found; files are named by their place in the folder.
    std::vector<std::pair<Kind, std::string>> findings(const std::vector<std::string>& scans,
                                                       const std::string& output = "o.vpt",
                                                       const std::string& work = "",
                                                       const std::string& log = "") {
        std::vector<wxString> files;
        for (const std::string& scan : scans) files.push_back(toWx(folder.file(scan)));
        PrepareChecks checks(toWx(folder.file(work)), files, toWx(folder.file(output)), Tree_Octree,
                             0, log.empty() ? wxString() : toWx(folder.file(log)));
        std::vector<std::pair<Kind, std::string>> found;
        for (const PrepareFinding& finding : checks.Run())
            found.emplace_back(
                finding.kind,
                fs::path(finding.file.utf8_string()).lexically_relative(folder.path()).string());
        return found;
    }

    TempFolder folder;
};

TEST_F(PrepareChecksTest, FindsNothingWhereAllIsWellAndLeavesNothingBehind) {
    EXPECT_THAT(findings({"a.pts"}, "o.vpt", "", "log"), testing::IsEmpty());
    EXPECT_EQ(folder.names(), std::set<std::string>{"a.pts"});
    fs::create_symlink("new", folder.file("log"));
    EXPECT_THAT(findings({"a.pts"}, "o.vpt", "", "log"), testing::IsEmpty());
    EXPECT_EQ(folder.names(), (std::set<std::string>{"a.pts", "log"}));
}

TEST_F(PrepareChecksTest, TellsOfEverythingThatStandsInTheWay) {
    writeBytes(folder.file("empty.ptx"), "");
    writeBytes(folder.file("b.las"), "no such thing");
    const std::vector<std::pair<Kind, std::string>> expected = {
        {Kind::Output, "no/o.txt"}, {Kind::Scan, "none.pts"}, {Kind::Scan, "empty.ptx"},
        {Kind::Scan, "b.las"},      {Kind::Log, "a.pts"},     {Kind::NoFolder, "no"},
        {Kind::NoFolder, "b.las"}};
    // The file goes to where its link leads.
    fs::create_symlink("none/o.vpt", folder.file("link.vpt"));
    fs::create_symlink("loop.vpt", folder.file("loop.vpt"));
    EXPECT_THAT(findings({"a.pts"}, "link.vpt"),
                testing::ElementsAre(std::pair(Kind::NoFolder, std::string("none"))));
    EXPECT_THAT(findings({"a.pts"}, "loop.vpt"),
                testing::ElementsAre(std::pair(Kind::Output, std::string("loop.vpt"))));
    EXPECT_EQ(findings({"none.pts", "a.pts", "empty.ptx", "b.las"}, "no/o.txt", "b.las", "a.pts"),
              expected);
}

TEST_F(PrepareChecksTest, TellsOfTooLittleRoomHoweverLargeTheScansAre) {
    constexpr auto hole = 1ULL << 43;
    std::vector<std::string> scans;
    for (int i = 0; i < 3; ++i) {
        scans.push_back(std::to_string(i) + ".pts");
        writeBytes(folder.file(scans.back()), "1\n0 0 0\n");
        fs::resize_file(folder.file(scans.back()), hole);
    }
    const std::vector<std::pair<Kind, std::string>> expected = {{Kind::NoRoom, "."}};
    EXPECT_EQ(findings(scans), expected);
}

}  // namespace
}  // namespace vpc::test
