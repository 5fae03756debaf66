#include <csignal>
#include <functional>

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/PrepareRun.h"

namespace vpc::test {

namespace {

using testing::HasSubstr;

const std::string olderOutput = "an older result";

/// Notes what it is told, and acts at a chosen call of one stage.
struct Observer : PrepareObserver {
    bool onProgress(const PrepareProgress& progress) override {
        reports.push_back(progress);
        if (progress.stage != stage || --call != 0) return true;
        return act();
    }
    bool onScansMeasured(const ScanSummary& newSummary, const wxString& newMessage) override {
        summary = newSummary;
        message = newMessage.utf8_string();
        return goesOn;
    }

    PrepareStage stage = PrepareStage::MeasureScans;
    int call = 0;
    std::function<bool()> act;
    bool goesOn = true;
    ScanSummary summary;
    std::string message;
    std::vector<PrepareProgress> reports;
};

/// Runs `work` in a process of its own, whose exit status it gives; returns the wait status.
template <class Work>
int inChild(const Work& work) {
    const pid_t child = fork();
    if (child == 0) _exit(work());
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

constexpr PrepareStage allStages[] = {PrepareStage::MeasureScans, PrepareStage::AddPoints,
                                      PrepareStage::BuildLevels, PrepareStage::WriteFile};

/// A folder with an older output and files of others that a failed run must leave alone.
class FailedRun : public testing::Test {
protected:
    FailedRun() {
        writeBytes(folder_.output(), olderOutput);
        writeBytes(folder_.work() + "notes--0", "somebody else's");
    }

    TreePrepareResult run(const std::string& scan, Observer* observer = nullptr) const {
        return prepare({scan}, folder_.work(), folder_.output(), {0, false, 5000, 10}, observer);
    }
    void expectNothingChanged(std::set<std::string> scans) const {
        EXPECT_TRUE(readBytes(folder_.output()) == olderOutput);
        scans.insert({"t.vpt", "work/notes--0"});
        EXPECT_TRUE(folder_.holdsOnly(scans)) << testing::PrintToString(folder_.names());
    }
    /// Runs over a scan of that content, which must end with a message that begins so.
    std::string failWith(const std::string& name, const std::string& content) const {
        SCOPED_TRACE(name);
        writeBytes(folder_.file(name), content);
        const auto result = run(folder_.file(name));
        EXPECT_FALSE(result.success);
        EXPECT_EQ(result.elapsedTime, "");
        expectNothingChanged({name});
        std::filesystem::remove(folder_.file(name));
        return result.message.utf8_string();
    }
    /// A scan of a few batches, which one run keeps in memory.
    std::string smallScan(std::size_t points = 250000) const {
        writeLas(folder_.file("a.las"), {}, makeCloud({CloudShape::Uniform, points, 1}));
        return folder_.file("a.las");
    }
    /// A scan of many batches.
    std::string bigScan() const { return smallScan(2800000); }

    const PrepareFolder folder_;
};

}  // namespace

TEST_F(FailedRun, SaysWhatIsWrongWithItsInput) {
    const std::string noPoints = "ERROR: FinishAddData() failed!!";
    const std::string pose = "0 0 0\n1 0 0\n0 1 0\n0 0 1\n1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n";
    writeLas(folder_.file("a.las"), {2, 7}, makeCloud({CloudShape::Uniform, 5, 1}));
    const std::string las = readBytes(folder_.file("a.las"));
    std::filesystem::remove(folder_.file("a.las"));
    const auto with = [&](std::size_t position, std::string_view bytes) {
        return std::string(las).replace(position, bytes.size(), bytes);
    };
    using std::string_literals::operator""s;
    const struct {
        const char* name;
        std::string content;
        std::string message;
    } cases[] = {
        {"a.Las", las,
         "No valid input files (*.las, *.pts or *.ptx), so not able to preprocess point cloud"},
        {"a.las", with(0, "LASG"), "\n input file is not a las file!"},
        {"a.las", with(24, "\2"), "ERROR: invalid las major version number 2"},
        {"a.las", with(25, "\5"), "ERROR: invalid las minor version number 5"},
        {"a.las", with(104, "\13"), "ERROR: invalid point format 11"},
        {"a.las", with(105, "\42\0"s),
         "\n => in las file, point data record format (7) and record length (34) are conflicting: "
         "expected length is 36"},
        {"a.las", las.substr(0, 227 + lasGap), noPoints},
        {"a.ptx", "", noPoints},
        {"a.ptx", "4294967296\n4294967296\n" + pose, noPoints},
        {"a.ptx", "1\n1\n" + pose + "0 0 0 0.5 1 2 3\n", noPoints},
        {"a.pts", "1\nnan nan nan\n", noPoints},
    };
    // What is known of points left out may follow.
    for (const auto& bad : cases)
        EXPECT_THAT(failWith(bad.name, bad.content), testing::StartsWith(bad.message));
    const auto none = prepare({}, folder_.work(), folder_.output());
    EXPECT_FALSE(none.success);
    EXPECT_EQ(none.message, "Point cloud list of input files is empty...");
    const auto missing = run(folder_.file("b.las"));
    EXPECT_FALSE(missing.success);
    EXPECT_NE(missing.message, "");
    // A reader that believed counts that cannot be true would make up zeros for hours.
    EXPECT_THAT(failWith("b.pts", "2\n1 2 3\n4 5 6\n700000000\n"),
                testing::ContainsRegex("b.pts.*700000000"));
    EXPECT_THAT(failWith("a.ptx", "30000\n30000\n" + pose + "1 2 3 0.5 1 2 3\n"),
                testing::ContainsRegex("a.ptx.*900000000"));
    expectNothingChanged({});
}

TEST_F(FailedRun, StopsWhereTheObserverSaysSo) {
    const std::string scan = smallScan();
    for (const PrepareStage stage : allStages) {
        SCOPED_TRACE(testing::Message() << "stage " << static_cast<int>(stage));
        Observer observer;
        observer.stage = stage, observer.call = 1;
        observer.act = [] { return false; };
        const auto result = run(scan, &observer);
        EXPECT_EQ(result.message, "Point cloud preprocessing was cancelled");
        expectNothingChanged({"a.las"});
        EXPECT_EQ(observer.reports.back().stage, stage) << "the run went on";
    }
    Observer observer;
    observer.goesOn = false;
    EXPECT_FALSE(run(scan, &observer).success);
    expectNothingChanged({"a.las"});
}

TEST_F(FailedRun, EndsWhenAScanVanishesBetweenItsPasses) {
    const std::string a = smallScan(), b = folder_.file("b.las");
    std::filesystem::copy_file(a, b);
    Observer observer;
    observer.stage = PrepareStage::AddPoints, observer.call = 1;
    observer.act = [&] { return std::filesystem::remove(b); };
    const auto result = prepare({a, b}, folder_.work(), folder_.output(), {}, &observer);
    EXPECT_NE(result.message.find("gave 500000 points at first and 250000 when"), wxString::npos);
    EXPECT_TRUE(result.message.EndsWith("b.las cannot be opened (No such file or directory)"));
    expectNothingChanged({"a.las"});
}

TEST_F(FailedRun, TellsWhatWasThrownAtIt) {
    const std::string scan = smallScan(100);
    const auto messageOf = [&](std::function<bool()> thrower) {
        Observer observer;
        observer.stage = PrepareStage::AddPoints, observer.call = 1;
        observer.act = std::move(thrower);
        const auto result = run(scan, &observer);
        EXPECT_FALSE(result.success);
        expectNothingChanged({"a.las"});
        return result.message.utf8_string();
    };
    EXPECT_EQ(messageOf([]() -> bool { throw std::runtime_error("gr\u00fcn"); }),
              "EXCEPTION in point cloud preprocessing: gr\u00fcn");
    EXPECT_EQ(messageOf([]() -> bool { throw 7; }),
              "UNCAUGHT EXCEPTION in point cloud preprocessing ");
}

TEST_F(FailedRun, TellsItsObserverHowFarItIsAndWhatTheScansLack) {
    Observer observer;
    ASSERT_TRUE(run(smallScan(), &observer).success);
    EXPECT_EQ(observer.summary.points, 250000u);
    std::set<PrepareStage> stages = {observer.reports.front().stage};
    for (std::size_t i = 1; i < observer.reports.size(); ++i) {
        const PrepareProgress &last = observer.reports[i - 1], &next = observer.reports[i];
        EXPECT_GE(next.stage, last.stage);
        EXPECT_TRUE(next.stage != last.stage || next.pointsDone >= last.pointsDone);
        EXPECT_TRUE(next.pointsInAll == 0 || next.pointsDone <= next.pointsInAll);
        stages.insert(next.stage);
    }
    EXPECT_EQ(stages.size(), std::size(allStages));
    writeBytes(folder_.file("a.pts"), "10\n1 2 3\n4 5 6\n7 8 inf\n9 9\n");
    EXPECT_TRUE(run(folder_.file("a.pts"), &observer).success);
    EXPECT_EQ(observer.summary.points, 10u);
    EXPECT_EQ(observer.summary.nonFinitePoints, 1u);
    EXPECT_EQ(observer.summary.pointsWithoutValues, 6u);
    const std::string las = smallScan(100);
    std::filesystem::resize_file(las, 227 + lasGap + 30 * 34);
    EXPECT_TRUE(run(las, &observer).success);
    EXPECT_EQ(observer.summary.points, 30u);
    EXPECT_EQ(observer.summary.missingRecords, 70u);
    EXPECT_THAT(observer.message, HasSubstr("70"));
}

TEST_F(FailedRun, CannotDoWithoutItsFolders) {
    const std::string scan = smallScan(100);
    std::filesystem::create_directory(folder_.file("folder.vpt"));
    const auto message = [&](const std::string& work, const std::string& output) {
        const auto result = prepare({scan}, folder_.file(work), folder_.file(output));
        return (result.success ? "" : "failed: ") + result.message.utf8_string();
    };
    EXPECT_THAT(message("none/", "t.vpt"),
                testing::EndsWith("--points cannot be created (No such file or directory)"));
    EXPECT_THAT(message("work/", "folder.vpt"), HasSubstr("folder.vpt is no regular file"));
    // With no separator at its end the working folder is the beginning of temporary files' names.
    EXPECT_THAT(message("missing/work", "t.vpt"), HasSubstr("missing/work"));
    expectNothingChanged({"a.las", "folder.vpt"});
    EXPECT_EQ(message("prefix", "t.vpt"), "");
    EXPECT_TRUE(folder_.holdsOnly({"a.las", "folder.vpt", "t.vpt", "work/notes--0"}));
}

TEST_F(FailedRun, SaysWhyTheDiskTakesNoMore) {
    const std::string scan = smallScan();
    const int status = inChild([&] {
        constexpr rlimit oneMegabyte{1 << 20, 1 << 20};
        setrlimit(RLIMIT_FSIZE, &oneMegabyte);
        std::signal(SIGXFSZ, SIG_IGN);
        const std::string message = run(scan).message.utf8_string();
        return message == folder_.output() + " cannot be written (File too large)" ? 0 : 1;
    });
    EXPECT_EQ(status, 0);
    expectNothingChanged({"a.las"});
}

TEST_F(FailedRun, KeepsWhatItHadToSayBefore) {
    const std::string none = folder_.file("none.pts");
    writeBytes(folder_.file("a.pts"), "1\n1 2 3\n");
    const std::string warning =
        "\n" + none + " cannot be opened (No such file or directory) and is left out";
    const auto result = prepare({folder_.file("a.pts"), none}, folder_.work(), "/none/t.vpt");
    EXPECT_EQ(result.message,
              toWx("/none/t.vpt cannot be written (No such file or directory)" + warning));
    EXPECT_EQ(run(none).message, toWx("ERROR: FinishAddData() failed!!" + warning));
}

TEST_F(FailedRun, LeavesTheOlderOutputWhenItIsKilled) {
    const std::string scan = bigScan();
    for (const PrepareStage stage : allStages) {
        for (const int call : {1, 20}) {
            SCOPED_TRACE(testing::Message() << "stage " << static_cast<int>(stage) << call);
            Observer observer;
            observer.stage = stage, observer.call = call;
            observer.act = [] { return kill(getpid(), SIGKILL) == 0; };
            const int status = inChild([&] { return run(scan, &observer).success ? 0 : 1; });
            EXPECT_TRUE(WIFSIGNALED(status) || call > 1) << "else the stage was over sooner";
            EXPECT_EQ(readBytes(folder_.output()) == olderOutput, WIFSIGNALED(status));
            writeBytes(folder_.output(), olderOutput);
        }
    }
}

}  // namespace vpc::test
