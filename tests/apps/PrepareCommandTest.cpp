#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "support/ProgramRun.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;
using vpc::test::ProgramResult;
using vpc::test::ProgramRun;
using vpc::test::readBytes;
using vpc::test::TempFolder;
using vpc::test::writeBytes;

constexpr const char* threePoints = "3\n0 0 0\n1 2 3\n4 5 6.5\n";

class PrepareCommandTest : public testing::Test {
protected:
    ProgramResult run(const std::vector<std::string>& arguments) const {
        return vpc::test::runProgram(arguments, folder.path());
    }
    void write(const std::string& name, const std::string& bytes) const {
        writeBytes(folder.file(name), bytes);
    }
    void sample(const std::string& name, const std::string& points) const {
        ASSERT_EQ(run({"sample", name, "--points", points}).status, 0);
    }
    /// What is in the folder itself; below it, a run's files come and go.
    long entries() const {
        return std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator());
    }

    TempFolder folder;
};

TEST_F(PrepareCommandTest, WrongUsageGivesStatus2) {
    write("a.pts", threePoints);
    const std::vector<std::vector<std::string>> wrong = {
        {},
        {"prepair"},
        {"prepare"},
        {"prepare", "a.pts"},
        {"prepare", "-o", "a.vpt"},
        {"prepare", "-o", "a.vpt", "--tree", "oak", "a.pts"},
        {"prepare", "-o", "a.vpt", "--max-points", "0", "a.pts"},
        {"prepare", "-o", "a.vpt", "--max-points", "many", "a.pts"},
        {"prepare", "-o", "a.vpt", "--max-level", "61", "a.pts"},
        {"prepare", "-o", "a.vpt", "--unit", "21", "a.pts"},
        {"prepare", "-o", "a.vpt", "--unit", "cubits", "a.pts"},
        {"info"},
        {"verify", "a.vpt", "b.vpt"},
        {"sample", "a.xyz"},
        {"sample", "b.pts", "--format", "3"},
        {"sample", "a.las", "--format", "2"},
        {"sample", "a.las", "--points", "0"},
        {"sample", "a.las", "--points", "5000000000"}};
    for (const auto& arguments : wrong) {
        const ProgramResult result = run(arguments);
        EXPECT_EQ(result.status, 2) << testing::PrintToString(arguments) << result.err;
        EXPECT_NE(result.err, "") << testing::PrintToString(arguments);
    }
    EXPECT_THAT(run({"--version"}).out, HasSubstr("vpc "));
    EXPECT_EQ(run({"--help"}).status, 0);
    EXPECT_THAT(run({"prepare", "--help"}).out, HasSubstr("10000"));
    EXPECT_THAT(folder.names(), ElementsAre("a.pts"));
}

TEST_F(PrepareCommandTest, RefusesBeforeItStartsInASentenceThatNamesTheFile) {
    write("a.pts", threePoints);
    write("b.ptx", "1\n1\n");
    write("c.Las", "x");
    write("bad.las", "no such thing");
    write("empty.pts", "");
    fs::create_directory(folder.file("d.pts"));
    fs::create_directory(folder.file("dir.vpt"));
    fs::create_hard_link(folder.file("a.pts"), folder.file("same.vpt"));
    sample("ok.las", "10");
    std::string las = readBytes(folder.file("ok.las"));
    write("header.las", las.substr(0, 227));
    las.replace(107, 4, 4, '\0');
    write("none.las", las);
    const auto before = folder.names();

    struct Case {
        std::vector<std::string> arguments;
        std::string file;
        std::string reason;
    };
    const std::vector<Case> cases = {
        {{"-o", "x.vpt", "none.pts"}, "none.pts", "does not exist"},
        {{"-o", "x.vpt", "d.pts"}, "d.pts", "no regular file"},
        {{"-o", "x.vpt", "empty.pts"}, "empty.pts", "empty"},
        {{"-o", "x.vpt", "c.Las"}, "c.Las", "all small or all capital letters"},
        {{"-o", "x.vpt", "a.pts", "b.ptx"}, "b.ptx", "another format than 'a.pts'"},
        {{"-o", "x.vpt", "bad.las"}, "bad.las", "not a las file"},
        {{"-o", "x.vpt", "none.las"}, "none.las", "holds no points"},
        {{"-o", "x.vpt", "header.las"}, "header.las", "none of the 10 points"},
        {{"-o", "x.VPT", "a.pts"}, "x.VPT", "named '.vpt'"},
        {{"-o", "vpt", "a.pts"}, "vpt", "named '.vpt'"},
        {{"-o", "same.vpt", "a.pts"}, "same.vpt", "same file as the scan 'a.pts'"},
        {{"-o", "dir.vpt", "a.pts"}, "dir.vpt", "no regular file"},
        {{"-o", "no/x.vpt", "a.pts"}, "no", "no folder"},
        {{"-o", "x.vpt", "--work", "a.pts", "a.pts"}, "a.pts", "no folder"},
        {{"-o", "x.vpt", "--log", "a.pts", "a.pts"}, "a.pts", "cannot be the log"},
        {{"-o", "x.vpt", "--log", "no/log", "a.pts"}, "no/log", "cannot be written as the log"}};
    for (const Case& c : cases) {
        std::vector<std::string> arguments = {"prepare"};
        arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
        const ProgramResult result = run(arguments);
        SCOPED_TRACE(testing::PrintToString(arguments));
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, HasSubstr("vpc prepare: '" + c.file + "'"));
        EXPECT_THAT(result.err, HasSubstr(c.reason));
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
    }
    // Even the administrator can make no files there.
    EXPECT_THAT(run({"prepare", "-o", "x.vpt", "--work", "/proc", "a.pts"}).err,
                HasSubstr("'/proc' takes no new files"));
    EXPECT_THAT(run({"prepare", "-o", "/proc/x.vpt", "a.pts"}).err,
                HasSubstr("'/proc' takes no new files"));
    EXPECT_EQ(folder.names(), before);
    EXPECT_EQ(readBytes(folder.file("a.pts")), threePoints);
}

TEST_F(PrepareCommandTest, NeedsRightsToReadAndForTextToWrite) {
    if (geteuid() == 0) GTEST_SKIP() << "root may do everything";
    write("a.pts", threePoints);
    sample("a.las", "100");
    fs::permissions(folder.file("a.pts"), fs::perms::owner_read);
    fs::permissions(folder.file("a.las"), fs::perms::owner_read);
    EXPECT_THAT(run({"prepare", "-o", "x.vpt", "a.pts"}).err, HasSubstr("cannot be written"));
    EXPECT_EQ(run({"prepare", "-o", "x.vpt", "a.las"}).status, 0);
    fs::permissions(folder.file("a.las"), fs::perms::none);
    EXPECT_THAT(run({"prepare", "-o", "x.vpt", "a.las"}).err, HasSubstr("cannot be read"));
}

TEST_F(PrepareCommandTest, TooLittleRoomIsAnErrorThatForceOverrides) {
    // A scan with a large hole behind its points: its size makes a huge estimate.
    write("big.pts", threePoints);
    fs::resize_file(folder.file("big.pts"), 1ULL << 43);
    const ProgramResult refused = run({"prepare", "-o", "x.vpt", "big.pts"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, testing::ContainsRegex("has [0-9.]+ [kMGT]?B free.*about 4.* TB"));
    EXPECT_THAT(refused.err, HasSubstr("--force"));
    EXPECT_THAT(folder.names(), ElementsAre("big.pts"));
    ProgramRun forced({"prepare", "-o", "x.vpt", "--force", "big.pts"}, folder.path());
    EXPECT_TRUE(ProgramRun::waitUntil([&] { return entries() > 1; }));
    forced.send(SIGKILL);  // it would look for points in the hole for hours
}

TEST_F(PrepareCommandTest, PreparesAndSumsUp) {
    sample("a.las", "20000");
    sample("b.las", "5000");
    const ProgramResult result = run({"prepare", "-o", "o.vpt", "--unit", "foot", "--log", "log",
                                      "--max-points", "1000", "--quiet", "a.las", "b.las"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, testing::ContainsRegex("o.vpt\n  points  25000\n  levels  [0-9]+\n"
                                                   "  nodes   [0-9]+\n  size    .*\n  time    "));
    EXPECT_THAT(run({"info", "o.vpt"}).out, HasSubstr("2 Feet"));
    EXPECT_EQ(run({"verify", "o.vpt"}).out, "no faults found\n");
    EXPECT_THAT(readBytes(folder.file("log")), HasSubstr("25000 points"));
    EXPECT_THAT(folder.names(), UnorderedElementsAre("a.las", "b.las", "log", "o.vpt"));
    // The kind of tree and its limits reach the library.
    ASSERT_EQ(run({"prepare", "-o", "k.vpt", "--tree", "kd", "--max-level", "3", "--max-points",
                   "100", "a.las", "a.las"})
                  .status,
              0);
    const std::string info = run({"info", "k.vpt"}).out;
    EXPECT_THAT(info, HasSubstr("Tree_KdTree_Symmetric"));
    EXPECT_THAT(info, HasSubstr("points        40000 "));
    EXPECT_THAT(info, testing::ContainsRegex("\n    3 [^\n]*\n$")) << "level 3 is the deepest";
    EXPECT_EQ(run({"verify", "k.vpt"}).status, 0);
}

TEST_F(PrepareCommandTest, FileNamesMayHoldAnyCharacter) {
    const std::string name = "B\u00e4ume \u6811 \U0001F332.pts";
    write(name, threePoints);
    fs::create_directory(folder.file("\u00fc"));
    const std::string output = "\u00fc/\u00d6l.vpt";
    const ProgramResult result = run({"prepare", "-o", output, name});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr(output));
    EXPECT_THAT(run({"info", output}).out, testing::ContainsRegex("bounds max +4\\.000"))
        << "a point, whatever the locale says";
    EXPECT_EQ(run({"verify", output}).status, 0);
    EXPECT_THAT(run({"prepare", "-o", "x.vpt", "\u00e4.las"}).err, HasSubstr("'\u00e4.las'"));
}

TEST_F(PrepareCommandTest, IncompleteTextStopsUnlessAllowed) {
    write("a.pts", threePoints);
    write("short.pts", "5\n0 0 0\n1 2 3\n4 5 6\n");
    write("o.vpt", "older");
    const ProgramResult stopped = run({"prepare", "-o", "o.vpt", "a.pts", "short.pts"});
    EXPECT_EQ(stopped.status, 1);
    EXPECT_THAT(stopped.err, HasSubstr("2 have no values"));
    EXPECT_THAT(stopped.err, HasSubstr("'short.pts' is not complete"));
    EXPECT_EQ(readBytes(folder.file("o.vpt")), "older");
    EXPECT_EQ(run({"prepare", "-o", "o.vpt", "--allow-incomplete", "short.pts"}).status, 0);
    EXPECT_THAT(run({"info", "o.vpt"}).out, HasSubstr("points        5 "));
    // Nothing is missing from lines of a number of values that PTS does not know.
    write("five.pts", "2\n1 2 3 4 5\n6 7 8 9 10\n");
    const ProgramResult unknown = run({"prepare", "-o", "o.vpt", "five.pts"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_THAT(unknown.err, HasSubstr("'five.pts' cannot be read: its second line holds 5"));
}

TEST_F(PrepareCommandTest, MissingLasRecordsAreAWarning) {
    sample("a.las", "1000");
    fs::resize_file(folder.file("a.las"), 227 + 34 * 400 + 10);
    const ProgramResult result = run({"prepare", "-o", "o.vpt", "a.las"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.err, HasSubstr("warning"));
    EXPECT_THAT(result.err, HasSubstr("600"));
    EXPECT_THAT(result.out, HasSubstr("points  400\n"));
}

TEST_F(PrepareCommandTest, SignalsStopItCleanly) {
    sample("a.las", "3000000");
    for (const int signal : {SIGINT, SIGTERM}) {
        write("o.vpt", "older");
        ProgramRun program({"prepare", "-o", "o.vpt", "--max-points", "2000", "a.las"},
                           folder.path());
        // Its own folder is there: it is at work.
        ASSERT_TRUE(ProgramRun::waitUntil([&] { return entries() > 2; }));
        program.send(signal);
        program.send(signal);
        const ProgramResult result = program.wait();
        EXPECT_EQ(result.status, 130) << result.err;
        EXPECT_THAT(result.err, HasSubstr("interrupted"));
        EXPECT_THAT(folder.names(), UnorderedElementsAre("a.las", "o.vpt"));
        EXPECT_EQ(readBytes(folder.file("o.vpt")), "older");
    }
}

TEST_F(PrepareCommandTest, AFileSizeLimitLeavesNothingBehind) {
    sample("a.las", "100000");
    write("o.vpt", "older");
    const ProgramResult result =
        ProgramRun({"prepare", "-o", "o.vpt", "--quiet", "a.las"}, folder.path(), 1000000).wait();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("'o.vpt' was not touched"));
    EXPECT_THAT(folder.names(), UnorderedElementsAre("a.las", "o.vpt"));
    EXPECT_EQ(readBytes(folder.file("o.vpt")), "older");
}

}  // namespace
