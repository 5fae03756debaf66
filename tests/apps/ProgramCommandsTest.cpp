#include <fcntl.h>
#include <sys/file.h>

#include <chrono>
#include <vector>

#include "support/ProgramRun.h"

namespace vpc::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

using ProgramCommandsTest = ProgramTest;

TEST_F(ProgramCommandsTest, MistypedNamesGetTheNearestRightOne) {
    expectFailure("prepar x.las", 2, "'prepar' is no command; did you mean 'prepare'?");
    expectFailure("veiw t.vpt", 2, "did you mean 'view'?");
    expectFailure("frobnicate", 2, "'frobnicate' is no command; see vpc --help");
    expectFailure("prepare --outpt=o.vpt x.las", 2,
                  "vpc prepare: '--outpt' is no option; did you mean '--output'?");
    EXPECT_EQ(run("help prepare").out, run("prepare --help").out);
    EXPECT_EQ(run("help").out, run("--help").out);
    EXPECT_THAT(run("version").out, StartsWith("vpc "));
}

TEST_F(ProgramCommandsTest, RunsRemoveWhatKilledOnesHaveLeft) {
    expectDone("sample a.las --points 1000 --seed 1");
    const auto longAgo = fs::file_time_type::clock::now() - std::chrono::minutes(1);
    fs::create_directory(folder.file("vpc-work-held"));
    fs::create_directory(folder.file("vpc-work-left"));
    fs::create_directory(folder.file("vpc-work-young"));
    write("vpc-work-left/piece", "points");
    for (const char* name : {"vpc-partial-held.tmp", "vpc-partial-left.tmp", "my-partial.tmp"})
        write(name, "points");
    for (const char* name : {"vpc-work-held", "vpc-work-left", "vpc-partial-held.tmp",
                             "vpc-partial-left.tmp", "my-partial.tmp"})
        fs::last_write_time(folder.file(name), longAgo);
    for (const char* held : {"vpc-work-held", "vpc-partial-held.tmp"}) {
        const int file = open(folder.file(held).c_str(), O_RDONLY | O_CLOEXEC);
        ASSERT_EQ(flock(file, LOCK_EX), 0) << "it stays open until the test program ends";
    }
    expectDone("prepare -o o.vpt a.las");
    EXPECT_TRUE(folder.holdsOnly({"a.las", "o.vpt", "my-partial.tmp", "vpc-work-held",
                                  "vpc-work-young", "vpc-partial-held.tmp"}));
}

TEST_F(ProgramCommandsTest, RunsKeepWhatRunningOnesWrite) {
    expectDone("sample a.las --points 1000000 --seed 1");
    write("one.pts", "1\n1 2 3\n");
    const auto temporary = [&] {
        std::vector<fs::path> found;
        for (const auto& entry : fs::directory_iterator(folder.path()))
            if (entry.path().filename().string().starts_with("vpc-")) found.push_back(entry);
        return found;
    };
    ProgramRun first("prepare -o first.vpt --max-points 100 a.las", folder.path());
    ASSERT_TRUE(ProgramRun::waitUntil([&] { return temporary().size() == 2; }));
    first.send(SIGSTOP);
    for (const fs::path& file : temporary())
        fs::last_write_time(file, fs::file_time_type::clock::now() - std::chrono::minutes(1));
    expectDone("prepare -o second.vpt one.pts");
    EXPECT_EQ(temporary().size(), 2U);
    first.send(SIGCONT);
    EXPECT_EQ(first.wait().status, 0);
}

}  // namespace
}  // namespace vpc::test
