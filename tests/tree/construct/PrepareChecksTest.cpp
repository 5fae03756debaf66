#include "tree/construct/PrepareChecks.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "support/TempFolder.h"
#include "tree/construct/SpillFile.h"

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
        problems = "";
        for (const PrepareFinding& finding : checks.Run()) {
            problems += finding.problem.utf8_string() + "\n";
            found.emplace_back(
                finding.kind,
                fs::path(finding.file.utf8_string()).lexically_relative(folder.path()).string());
        }
        return found;
    }

    TempFolder folder;
    std::string problems;
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
    // Together 10^12 points, which are as many nodes: with one point a node.
    std::vector<std::string> scans;
    for (int i = 0; i < 4; ++i) {
        scans.push_back(std::to_string(i) + ".pts");
        writeBytes(folder.file(scans.back()), "1\n0 0 0\n");
        fs::resize_file(folder.file(scans.back()), 25 * 250'000'000'000ULL - 1);
    }
    const std::vector<std::pair<Kind, std::string>> expected = {{Kind::NoRoom, "."}};
    EXPECT_EQ(findings(scans), expected);
    // The result with its nodes, and what waits to be given back of the temporary file, or all of
    // it.
    const bool givesBack = SpillFile::GivesRoomBack(folder.path());
    EXPECT_THAT(problems, testing::HasSubstr(givesBack ? "about 878 TB" : "about 922 TB"));
    const fs::path otherDisk = "/dev/shm";
    struct stat here = {}, there = {};
    if (stat(folder.path().c_str(), &here) != 0 || stat(otherDisk.c_str(), &there) != 0 ||
        here.st_dev == there.st_dev)
        GTEST_SKIP() << "there is no second disk";
    const std::string work = otherDisk.lexically_relative(folder.path()).string();
    EXPECT_EQ(findings(scans, "o.vpt", work), (std::vector<std::pair<Kind, std::string>>{
                                                  {Kind::NoRoom, "."}, {Kind::NoRoom, work}}));
    EXPECT_THAT(problems, testing::ContainsRegex("about 872 TB.*\n.*about 50.0 TB"));
}

}  // namespace
}  // namespace vpc::test
