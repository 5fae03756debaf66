#include <filesystem>

#include "support/LasBuilder.h"
#include "support/ProgramRun.h"

namespace vpc::test {
namespace {

namespace fs = std::filesystem;
using testing::ContainsRegex;
using testing::HasSubstr;

constexpr const char* threePoints = "3\n0 0 0\n1 2 3\n4 5 6.5\n";

class PrepareCommandTest : public ProgramTest {
protected:
    void sample(const std::string& name, const std::string& points) const {
        expectDone("sample " + name + " --points " + points);
    }
    /// What is in the folder itself; below it, a run's files come and go.
    long entries() const {
        return std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator());
    }
};

TEST_F(PrepareCommandTest, WrongUsageGivesStatus2) {
    write("a.pts", threePoints);
    for (const char* arguments : {"",
                                  "prepair",
                                  "prepare",
                                  "prepare a.pts",
                                  "prepare -o a.vpt",
                                  "prepare -o a.vpt a.pts --tree oak",
                                  "prepare -o a.vpt a.pts --max-points 0",
                                  "prepare -o a.vpt a.pts --max-points many",
                                  "prepare -o a.vpt a.pts --max-level 61",
                                  "prepare -o a.vpt a.pts --text loose",
                                  "prepare -o a.vpt a.pts --unit 21",
                                  "prepare -o a.vpt a.pts --unit cubits",
                                  "info",
                                  "verify",
                                  "sample a.xyz",
                                  "sample b.pts --format 3",
                                  "sample b.pts --order random",
                                  "sample a.las --format 2",
                                  "sample a.las --points 0",
                                  "sample a.las --points 5000000000"})
        expectFailure(arguments, 2, "");
    for (const std::string memory : {"15M", "-16M", "many", "99999999999999999999", "1E"})
        expectFailure("prepare -o a.vpt a.pts --memory=" + memory, 2, "--memory: ");
    EXPECT_THAT(run("--version").out, HasSubstr("vpc "));
    EXPECT_EQ(run("--help").status, 0);
    EXPECT_THAT(run("prepare --help").out, testing::AllOf(HasSubstr("10000"), HasSubstr("128M")));
    EXPECT_TRUE(folder.holdsOnly({"a.pts"}));
}

TEST_F(PrepareCommandTest, RefusesBeforeItStartsInASentenceThatNamesTheFile) {
    write("a.pts", threePoints);
    write("b.ptx",
          "1\n1\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n1 2 3 0.5\n");
    write("bad.las", "no such thing");
    write("empty.pts", "");
    write("five.pts", "2\n1 2 3 4 5\n6 7 8 9 10\n");
    write("short.pts", "5\n0 0 0\n1 2 3\n4 5 inf\n");
    write("o.vpt", "older");
    fs::create_directory(folder.file("dir.vpt"));
    fs::create_hard_link(folder.file("a.pts"), folder.file("same.vpt"));
    sample("ok.las", "10");
    std::string las = read("ok.las");
    write("header.las", las.substr(0, 227));
    las.replace(107, 4, 4, '\0');
    write("none.las", las);
    const auto before = folder.names();
    const struct {
        const char* arguments;
        const char* sentence;
    } cases[] = {{"none.pts", "'none.pts' does not exist"},
                 {"/dev/null", "'/dev/null' is no regular file"},
                 {"empty.pts", "'empty.pts' is empty"},
                 {"a.pts b.ptx", "'b.ptx' is of another format (PTX) than 'a.pts' (PTS)"},
                 {"bad.las", "'bad.las' holds 'no such thing' in line 1"},
                 {"none.las", "'none.las' has a LAS header but holds no points"},
                 {"header.las", "none of the 10 points"},
                 {"five.pts", "'five.pts' holds 5 values in line 2"},
                 {"a.pts short.pts", "'short.pts' claims 5 points in line 1 and has 3"},
                 {"-o x.VPT a.pts", "named '.vpt'"},
                 {"-o vpt a.pts", "named '.vpt'"},
                 {"-o same.vpt a.pts", "same file as the scan 'a.pts'"},
                 {"-o dir.vpt a.pts", "'dir.vpt' is there already and is no regular file"},
                 {"-o no/x.vpt a.pts", "'no' is no folder"},
                 {"--work a.pts a.pts", "'a.pts' is no folder"},
                 {"--log a.pts a.pts", "cannot be the log"},
                 {"--log no/log a.pts", "'no/log' cannot be written as the log"},
                 // Even the administrator can make no files there.
                 {"--work /proc a.pts", "'/proc' takes no new files"},
                 {"-o /proc/x.vpt a.pts", "'/proc' takes no new files"}};
    for (const auto& c : cases) {
        const std::string arguments = c.arguments;
        const bool hasOutput = arguments.substr(0, 2) == "-o";
        expectFailure("prepare " + (hasOutput ? arguments : "-o o.vpt " + arguments), 1,
                      c.sentence);
    }
    // A run that fails tells also what it had left out till then.
    expectFailure("prepare -o o.vpt --allow-incomplete short.pts", 1, "lacks 2 points", 400);
    EXPECT_EQ(folder.names(), before);
    EXPECT_EQ(read("a.pts"), threePoints);
    EXPECT_EQ(read("o.vpt"), "older");
    expectDone("prepare -o o.vpt --allow-incomplete short.pts");
    EXPECT_THAT(run("info o.vpt").out, HasSubstr("points        2 "));
}

TEST_F(PrepareCommandTest, TooLittleRoomIsAnErrorThatForceOverrides) {
    // A scan with a large hole in the place of its points.
    LasBuilder scan;
    scan.versionMinor = 4;
    scan.count = 1ULL << 37;
    write("big.las", scan.bytes());
    fs::resize_file(folder.file("big.las"), 1ULL << 43);
    const std::string error = run("prepare -o x.vpt big.las").err;
    EXPECT_THAT(error,
                ContainsRegex("has [0-9.]+ [kMGT]?B free.*about (10.4|13.5) TB.*\n?.*--force"));
    // A text that is copied needs room for the copy as well.
    std::string lines;
    for (int i = 0; i < 2000; ++i) lines += "1;2;3\n";
    write("big.csv", lines);
    fs::resize_file(folder.file("big.csv"), 1ULL << 43);
    EXPECT_THAT(run("prepare -o x.vpt big.csv").err, ContainsRegex("about (36.4|51.8) TB"));
    EXPECT_TRUE(folder.holdsOnly({"big.csv", "big.las"}));
    ProgramRun forced("prepare -o x.vpt --force big.las", folder.path());
    EXPECT_TRUE(ProgramRun::waitUntil([&] { return entries() > 3; }));
    forced.send(SIGKILL);  // it would look for points in the hole for hours
}

TEST_F(PrepareCommandTest, PreparesAndSumsUp) {
    sample("B\u00e4ume.las", "20000");
    sample("\U0001F332.las", "5000");
    const ProgramResult result =
        run("prepare -o t.vpt --unit foot --log log --max-points 1000 B\u00e4ume.las "
            "\U0001F332.las");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    const TreeFile tree = folder.tree();
    Word nodes = 0;
    for (const auto& level : tree.levels) nodes += level.size();
    EXPECT_THAT(
        result.out,
        ContainsRegex("^t.vpt\n  points  25000\n  levels  " + std::to_string(tree.levels.size()) +
                      "\n  nodes   " + std::to_string(nodes) +
                      "\n  unit    Feet\n  size    1.79 MB\n  time    [0-9hms:.]+\n$"));
    EXPECT_EQ(tree.hostValue, 2U) << "feet";
    EXPECT_THAT(read("log"), HasSubstr("25000 points"));
    EXPECT_TRUE(folder.holdsOnly({"B\u00e4ume.las", "\U0001F332.las", "log", "t.vpt"}));
    // The kind of tree and its limits reach the library; missing records are a warning.
    fs::resize_file(folder.file("\U0001F332.las"), 227 + 34 * 400 + 10);
    const ProgramResult warned =
        run("prepare -o t.vpt --allow-incomplete --tree kd --max-level 3 --max-points 100 "
            "B\u00e4ume.las "
            "\U0001F332.las");
    EXPECT_EQ(warned.status, 0);
    EXPECT_THAT(warned.err, ContainsRegex("warning.*4600"));
    const ProgramResult told =
        run("prepare -o j.vpt --allow-incomplete --quiet --json --progress json B\u00e4ume.las "
            "\U0001F332.las");
    EXPECT_THAT(told.out, ContainsRegex("^\\{\"stage\":\"sorting points\",\"share\":0.[0-9]+,.*\n"
                                        "(\\{.*\\}\n)*\\{\"output\":\"j.vpt\",\"points\":20400,"
                                        ".*,\"unit\":\"Meters\",\"warnings\":\\[\\{\"file\":"
                                        "\"\U0001F332.las\",\"text\":\".*4600.*\"\\}\\]\\}\n$"));
    EXPECT_EQ(run("prepare -o j.vpt --quiet B\u00e4ume.las").out, "") << "no warning, no word";
    fs::remove(folder.file("j.vpt"));
    const TreeFile kd = folder.tree();
    EXPECT_EQ(kd.treeType, 1U);
    EXPECT_EQ(kd.levels.size(), 4U);
    EXPECT_EQ(kd.pointsOf(3).size(), 20400U);
    EXPECT_EQ(run("verify t.vpt").out, "no faults found\n");
}

TEST_F(PrepareCommandTest, SignalsStopItCleanly) {
    sample("a.las", "3000000");
    write("o.vpt", "older");
    for (const int signal : {SIGINT, SIGTERM}) {
        ProgramRun program("prepare -o o.vpt --max-points 2000 a.las", folder.path());
        // Its own folder is there: it is at work.
        ASSERT_TRUE(ProgramRun::waitUntil([&] { return entries() > 3; }));
        program.send(signal);
        program.send(signal);
        const ProgramResult result = program.wait();
        EXPECT_EQ(result.status, 128 + signal) << result.err;
        EXPECT_THAT(result.err, HasSubstr("interrupted"));
        EXPECT_TRUE(folder.holdsOnly({"a.las", "o.vpt"}));
        EXPECT_EQ(read("o.vpt"), "older");
    }
}

}  // namespace
}  // namespace vpc::test
