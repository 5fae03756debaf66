#include <csignal>
#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/PrepareRun.h"
#include "support/ScanFiles.h"
#include "support/TreeFile.h"

namespace vpc::test {

namespace {

const std::string olderOutput = "an older result";
const char* const cancelled = "Point cloud preprocessing was cancelled";

/// A folder with an older output and files of others that a failed run must leave alone.
class FailedRun : public testing::Test {
protected:
    FailedRun() {
        writeBytes(folder_.output(), olderOutput);
        writeBytes(folder_.work() + "notes--0", "somebody else's");
    }

    void expectNothingChanged(std::set<std::string> scans) const {
        EXPECT_TRUE(readBytes(folder_.output()) == olderOutput);
        scans.insert({"result.vpt", "work/notes--0"});
        EXPECT_TRUE(folder_.holdsOnly(scans)) << testing::PrintToString(folder_.folder.names());
    }

    /// A scan of a few batches, which one run keeps in memory.
    std::string smallScan(std::size_t points = 250000) {
        const std::string name = folder_.scan("a.las");
        writeLas(name, {}, makeCloud({CloudShape::Uniform, points, 1}));
        return name;
    }

    /// A scan of so many points that they cannot all wait in memory.
    std::string bigScan() { return smallScan(2800000); }

    PrepareFolder folder_;
    ReferenceSettings settings_{0, false, 5000, 10};
};

class Observer : public PrepareObserver {
public:
    bool onProgress(const PrepareProgress& progress) override {
        reports.push_back(progress);
        return !answer || answer(progress);
    }
    bool onScansMeasured(const ScanSummary& newSummary, const wxString& newMessage) override {
        summary = newSummary;
        message = newMessage.utf8_string();
        ++measured;
        return goesOn;
    }

    std::function<bool(const PrepareProgress&)> answer;
    bool goesOn = true;
    int measured = 0;
    ScanSummary summary;
    std::string message;
    std::vector<PrepareProgress> reports;
};

constexpr PrepareStage allStages[] = {PrepareStage::MeasureScans, PrepareStage::AddPoints,
                                      PrepareStage::BuildLevels, PrepareStage::WriteFile};

/// Runs `work` in a process of its own; returns its wait status. What it returns is the exit
/// status.
int inChild(const std::function<int()>& work) {
    const pid_t child = fork();
    if (child == 0) _exit(work());
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

std::string lasWith(std::size_t position, std::string_view bytes) {
    const TempFolder folder;
    writeLas(folder.file("a.las"), {2, 7}, makeCloud({CloudShape::Uniform, 5, 1}));
    std::string file = readBytes(folder.file("a.las"));
    file.replace(position, bytes.size(), bytes);
    return file;
}

}  // namespace

TEST_F(FailedRun, SaysWhatIsWrongWithItsInput) {
    const std::string noFormat =
        "No valid input files (*.las, *.pts or *.ptx), so not able to preprocess point cloud";
    const std::string noPoints = "ERROR: FinishAddData() failed!!";
    const std::string pose = "0 0 0\n1 0 0\n0 1 0\n0 0 1\n1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n";
    const std::string pts = "1\n1 2 3\n";
    using std::string_literals::operator""s;
    const struct {
        const char* name;
        std::string content;
        std::string message;
    } cases[] = {
        {"a.Las", lasWith(0, ""), noFormat},
        {"a.Pts", pts, noFormat},
        {"a.pts.txt", pts, noFormat},
        {"pts", pts, noFormat},
        {"a.las", "LAS", "\n input file is not a las file!"},
        {"a.las", lasWith(0, "LASG"), "\n input file is not a las file!"},
        {"a.las", lasWith(24, "\2"), "ERROR: invalid las major version number 2"},
        {"a.las", lasWith(25, "\5"), "ERROR: invalid las minor version number 5"},
        {"a.las", lasWith(104, "\13"), "ERROR: invalid point format 11"},
        {"a.las", lasWith(105, "\42\0"s),
         "\n => in las file, point data record format (7) and record length (34) are conflicting: "
         "expected length is 36"},
        {"a.las", lasWith(107, "\0\0\0\0"s), noPoints},
        {"a.las", lasWith(0, "").substr(0, 227 + lasGap), noPoints},
        {"a.ptx", "", noPoints},
        {"a.ptx", "0\n4\n" + pose, noPoints},
        {"a.ptx", "2\nmany\n" + pose, noPoints},
        {"a.ptx", "4294967296\n4294967296\n" + pose, noPoints},
        {"a.ptx", "1\n2\n" + pose + "0 0 0 0.5 1 2 3\n0 0 0 0.5 1 2 3\n", noPoints},
        {"a.pts", "1\nnan nan nan\n", noPoints},
    };
    for (const auto& bad : cases) {
        SCOPED_TRACE(std::string(bad.name) + " for " + bad.message);
        writeBytes(folder_.scan(bad.name), bad.content);
        const auto result =
            prepare({folder_.scan(bad.name)}, folder_.work(), folder_.output(), settings_);
        EXPECT_FALSE(result.success);
        // What is known of points left out may follow.
        EXPECT_EQ(result.message.utf8_string().substr(0, bad.message.size()), bad.message);
        EXPECT_EQ(result.elapsedTime, "");
        expectNothingChanged({bad.name});
        std::filesystem::remove(folder_.scan(bad.name));
    }
    const auto none = prepare({}, folder_.work(), folder_.output(), settings_);
    EXPECT_FALSE(none.success);
    EXPECT_EQ(none.message, "Point cloud list of input files is empty...");
    const auto missing =
        prepare({folder_.scan("b.las")}, folder_.work(), folder_.output(), settings_);
    EXPECT_FALSE(missing.success);
    EXPECT_NE(missing.message, "");
    expectNothingChanged({});
}

// A reader that believed such a count would make up zeros for hours.
TEST_F(FailedRun, NamesTheFileWhoseCountCannotBeTrue) {
    const std::string pose = "0 0 0\n1 0 0\n0 1 0\n0 0 1\n1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n";
    const struct {
        const char* name;
        std::string content;
        const char* count;
    } cases[] = {
        {"first.pts", "900000000000\n1 2 3\n4 5 6\n", "900000000000"},
        {"second-block.pts", "2\n1 2 3\n4 5 6\n700000000\n", "700000000"},
        {"first.ptx", "30000\n30000\n" + pose + "1 2 3 0.5 1 2 3\n", "900000000"},
    };
    for (const auto& bad : cases) {
        SCOPED_TRACE(bad.name);
        writeBytes(folder_.scan(bad.name), bad.content);
        const auto result =
            prepare({folder_.scan(bad.name)}, folder_.work(), folder_.output(), settings_);
        EXPECT_FALSE(result.success);
        EXPECT_THAT(result.message.utf8_string(),
                    testing::AllOf(testing::HasSubstr(bad.name), testing::HasSubstr(bad.count)));
        expectNothingChanged({bad.name});
        std::filesystem::remove(folder_.scan(bad.name));
    }
}

TEST_F(FailedRun, StopsWhereTheObserverSaysSo) {
    const std::string scan = bigScan();
    for (const PrepareStage stage : allStages) {
        for (const int calls : {1, 3}) {
            SCOPED_TRACE("stage " + std::to_string(static_cast<int>(stage)) + ", call " +
                         std::to_string(calls));
            Observer observer;
            int left = calls;
            bool wasAsked = false;
            observer.answer = [&](const PrepareProgress& progress) {
                if (progress.stage != stage || --left > 0) return true;
                wasAsked = true;
                return false;
            };
            const auto result =
                prepare({scan}, folder_.work(), folder_.output(), settings_, &observer);
            if (!wasAsked && calls > 1) {  // this stage was over sooner
                EXPECT_TRUE(result.success);
                writeBytes(folder_.output(), olderOutput);
                continue;
            }
            ASSERT_TRUE(wasAsked);
            EXPECT_FALSE(result.success);
            EXPECT_EQ(result.message, cancelled);
            EXPECT_EQ(observer.reports.back().stage, stage) << "the run went on";
            expectNothingChanged({"a.las"});
        }
    }
    Observer observer;
    observer.goesOn = false;
    const auto result = prepare({scan}, folder_.work(), folder_.output(), settings_, &observer);
    EXPECT_FALSE(result.success);
    EXPECT_EQ(result.message, cancelled);
    expectNothingChanged({"a.las"});
}

TEST_F(FailedRun, TellsItsObserverHowFarItIs) {
    Observer observer;
    const auto result =
        prepare({smallScan()}, folder_.work(), folder_.output(), settings_, &observer);
    ASSERT_TRUE(result.success) << result.message.utf8_string();
    EXPECT_EQ(observer.measured, 1);
    EXPECT_EQ(observer.summary.points, 250000u);
    for (std::size_t i = 1; i < observer.reports.size(); ++i) {
        const PrepareProgress& last = observer.reports[i - 1];
        const PrepareProgress& next = observer.reports[i];
        EXPECT_GE(next.stage, last.stage);
        EXPECT_TRUE(next.stage != last.stage || next.pointsDone >= last.pointsDone);
        EXPECT_TRUE(next.pointsInAll == 0 || next.pointsDone <= next.pointsInAll);
    }
    for (const PrepareStage stage : allStages)
        EXPECT_TRUE(std::any_of(observer.reports.begin(), observer.reports.end(),
                                [&](const auto& report) { return report.stage == stage; }));
}

TEST_F(FailedRun, TellsItsObserverWhatTheScansLack) {
    const std::string pts = folder_.scan("a.pts");
    writeBytes(pts, "10\n1 2 3\n4 5 6\n7 8 inf\n9 9\n");
    Observer observer;
    EXPECT_TRUE(prepare({pts}, folder_.work(), folder_.output(), settings_, &observer).success);
    EXPECT_EQ(observer.summary.points, 10u);
    EXPECT_EQ(observer.summary.nonFinitePoints, 1u);
    EXPECT_EQ(observer.summary.pointsWithoutValues, 6u);
    const std::string las = smallScan(100);
    std::filesystem::resize_file(las, 227 + lasGap + 30 * 34);
    EXPECT_TRUE(prepare({las}, folder_.work(), folder_.output(), settings_, &observer).success);
    EXPECT_EQ(observer.summary.points, 30u);
    EXPECT_EQ(observer.summary.missingRecords, 70u);
    EXPECT_THAT(observer.message, testing::HasSubstr("70"));
}

TEST_F(FailedRun, CannotDoWithoutItsFolders) {
    const std::string scan = bigScan();
    EXPECT_FALSE(
        prepare({scan}, folder_.work(), folder_.scan("none/result.vpt"), settings_).success);
    EXPECT_FALSE(prepare({scan}, folder_.scan("none/"), folder_.output(), settings_).success);
    expectNothingChanged({"a.las"});
    // A folder in the output's place can be neither opened nor replaced.
    std::filesystem::create_directory(folder_.scan("folder.vpt"));
    EXPECT_FALSE(prepare({scan}, folder_.work(), folder_.scan("folder.vpt"), settings_).success);
    expectNothingChanged({"a.las", "folder.vpt"});
}

TEST_F(FailedRun, CannotWriteIntoReadOnlyFolders) {
    if (geteuid() == 0) GTEST_SKIP() << "permissions do not bind root";
    const std::string scan = bigScan();
    namespace fs = std::filesystem;
    const auto readOnly = fs::perms::owner_read | fs::perms::owner_exec;
    for (const fs::path& locked : {fs::path(folder_.work()), folder_.folder.path()}) {
        SCOPED_TRACE(locked);
        fs::permissions(locked, readOnly);
        EXPECT_FALSE(prepare({scan}, folder_.work(), folder_.output(), settings_).success);
        fs::permissions(locked, fs::perms::owner_all);
        expectNothingChanged({"a.las"});
    }
}

// With no separator at its end the working folder is the beginning of the temporary files' names.
TEST_F(FailedRun, TakesAWorkingFolderWithoutSeparatorAsThePrefixOfNames) {
    const std::string scan = bigScan();
    EXPECT_FALSE(
        prepare({scan}, folder_.scan("missing/work"), folder_.output(), settings_).success);
    expectNothingChanged({"a.las"});
    EXPECT_TRUE(prepare({scan}, folder_.scan("prefix"), folder_.output(), settings_).success);
    EXPECT_TRUE(folder_.holdsOnly({"a.las", "result.vpt", "work/notes--0"}));
}

// Limits from "no node file fits" to "the result does not quite fit".
TEST_F(FailedRun, FailsCleanlyWhereFilesCannotGrow) {
    const std::string scan = bigScan();
    ASSERT_TRUE(prepare({scan}, folder_.work(), folder_.scan("whole"), settings_).success);
    const auto wholeSize = std::filesystem::file_size(folder_.scan("whole"));
    for (const auto limit : {std::uintmax_t{4000}, wholeSize / 2, wholeSize - 1}) {
        SCOPED_TRACE(limit);
        const int status = inChild([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit files{limit, limit};
            setrlimit(RLIMIT_FSIZE, &files);
            return prepare({scan}, folder_.work(), folder_.output(), settings_).success ? 1 : 0;
        });
        ASSERT_TRUE(WIFEXITED(status)) << "the run died";
        EXPECT_EQ(WEXITSTATUS(status), 0) << "the run claims a success";
        expectNothingChanged({"a.las", "whole"});
    }
}

TEST_F(FailedRun, FailsCleanlyOnAFullDisk) {
    const std::string scan = bigScan();
    const std::string disk = folder_.scan("disk");
    std::filesystem::create_directory(disk);
    // The result takes about 190 MiB; the points that do not wait in memory take 15 or more.
    for (const char* size : {"size=1m", "size=100m"}) {
        SCOPED_TRACE(size);
        if (mount("tmpfs", disk.c_str(), "tmpfs", 0, size) != 0)
            GTEST_SKIP() << "this system lets nobody mount a small disk here";
        std::filesystem::create_directory(disk + "/work");
        writeBytes(disk + "/result.vpt", olderOutput);
        const auto result = prepare({scan}, disk + "/work/", disk + "/result.vpt", settings_);
        const std::string kept = readBytes(disk + "/result.vpt");
        const bool isWorkEmpty = std::filesystem::is_empty(disk + "/work");
        umount2(disk.c_str(), MNT_DETACH);
        EXPECT_FALSE(result.success);
        EXPECT_EQ(kept, olderOutput);
        EXPECT_TRUE(isWorkEmpty);
    }
}

TEST_F(FailedRun, LeavesTheOlderOutputWhenItIsKilled) {
    const std::string scan = bigScan();
    for (const PrepareStage stage : allStages) {
        for (const int calls : {1, 20}) {
            SCOPED_TRACE("stage " + std::to_string(static_cast<int>(stage)) + ", call " +
                         std::to_string(calls));
            Observer observer;
            int left = calls;
            observer.answer = [&](const PrepareProgress& progress) {
                if (progress.stage == stage && --left == 0) kill(getpid(), SIGKILL);
                return true;
            };
            const int status = inChild([&] {
                prepare({scan}, folder_.work(), folder_.output(), settings_, &observer);
                return 0;
            });
            if (WIFSIGNALED(status)) {
                EXPECT_EQ(readBytes(folder_.output()), olderOutput);
            } else {  // this stage was over sooner
                EXPECT_GT(calls, 1);
                writeBytes(folder_.output(), olderOutput);
            }
        }
    }
}

}  // namespace vpc::test
