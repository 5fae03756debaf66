#include <fcntl.h>
#include <sys/file.h>

#include <array>
#include <set>
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
    std::array<char, 256> machine{};
    ASSERT_EQ(gethostname(machine.data(), machine.size() - 1), 0);
    // No system numbers its processes as high as that.
    const std::string gone = std::string(machine.data()) + "-999999999-";
    const std::string running = std::string(machine.data()) + "-" + std::to_string(getpid()) + "-";
    const std::string left = "vpc-work-" + gone + "left", held = "vpc-work-" + gone + "held";
    const std::set<std::string> kept = {"a.las",
                                        "o.vpt",
                                        "work",
                                        held,
                                        held + "/piece",
                                        "vpc-work-monday",
                                        "vpc-work-monday/piece",
                                        "vpc-partial-" + gone + "held.tmp",
                                        "vpc-partial-" + running + "x.tmp",
                                        "vpc-partial-" + gone + "notes.txt",
                                        "vpc-partial-elsewhere-999999999-x.tmp"};
    expectDone("sample a.las --points 1000 --seed 1");
    for (const std::string& folderName : {left, held, std::string("vpc-work-monday")}) {
        fs::create_directory(folder.file(folderName));
        write(folderName + "/piece", "points");
    }
    for (const std::string& name : kept)
        if (name.ends_with(".tmp") || name.ends_with(".txt")) write(name, "points");
    write("vpc-partial-" + gone + "left.tmp", "points");
    for (const std::string& name : {held, "vpc-partial-" + gone + "held.tmp"}) {
        const int file = open(folder.file(name).c_str(), O_RDONLY | O_CLOEXEC);
        ASSERT_EQ(flock(file, LOCK_EX), 0) << "it stays open until the test program ends";
    }
    expectDone("prepare -o o.vpt a.las");
    EXPECT_EQ(folder.names(), kept);
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
    expectDone("prepare -o second.vpt one.pts");
    EXPECT_EQ(temporary().size(), 2U);
    first.send(SIGCONT);
    EXPECT_EQ(first.wait().status, 0);
}

}  // namespace
}  // namespace vpc::test
