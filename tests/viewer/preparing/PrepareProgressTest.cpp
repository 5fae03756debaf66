#include "viewer/preparing/PrepareProgress.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "viewer/preparing/PrepareJob.h"
#include "viewer/preparing/UnitList.h"

namespace vpc::viewer {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(PrepareProgressTest, TakesLinesInPiecesOfAnySize) {
    const std::string lines =
        "{\"stage\":\"checking scans\",\"share\":0.1,\"bytes\":5,\"perSecond\":2500000}\n"
        "no JSON\n[1]\n"
        "{\"stage\":\"sorting points\",\"share\":0.5,\"points\":7,\"perSecond\":999.0,"
        "\"secondsLeft\":3725.5}\n";
    for (const std::size_t size : {std::size_t(1), std::size_t(7), lines.size()}) {
        PrepareProgress progress;
        std::vector<std::string> words;
        for (std::size_t at = 0; at < lines.size(); at += size) {
            progress.TakeOutput(lines.substr(at, size));
            if (words.empty() || words.back() != progress.Words())
                words.push_back(progress.Words());
        }
        const std::string last = "sorting points, 999 points/s, 1 h 2 min left";
        EXPECT_EQ(words.back(), last);
        if (size == 1) {
            EXPECT_THAT(words, ElementsAre("", "checking scans, 2.5 MB/s", last));
        }
        EXPECT_EQ(progress.Share(), 0.5);
        EXPECT_FALSE(progress.GetSummary());
    }
}

TEST(PrepareProgressTest, TellsWarningsFromTheLastSentence) {
    PrepareProgress progress;
    progress.TakeErrors("vpc prepare: warning: first\n  and more of it\nvpc prepare: warning: sec");
    progress.TakeErrors("ond \xff\nvpc prepare: 2 of 3 scans cannot be used\n  'a'\n  'b'");
    progress.Finish();
    EXPECT_THAT(progress.Warnings(), ElementsAre("first\n  and more of it", "second \xef\xbf\xbd"));
    EXPECT_EQ(progress.LastSentence(), "2 of 3 scans cannot be used\n  'a'\n  'b'");
}

class PrepareRunTest : public testing::Test {
protected:
    PrepareRunTest() {
        std::string name = (std::filesystem::temp_directory_path() / "vpc-test-XXXXXX").string();
        EXPECT_NE(mkdtemp(name.data()), nullptr);
        folder_ = name;
    }
    ~PrepareRunTest() override { std::filesystem::remove_all(folder_); }

    std::string File(const std::string& name) const { return (folder_ / name).string(); }
    /// \return what waitpid says of the program; what it writes is in the files out and err
    int Run(const std::vector<std::string>& arguments) const {
        std::string line = VPC_PROGRAM;
        for (const std::string& argument : arguments) line += " '" + argument + "'";
        return std::system((line + " >" + File("out") + " 2>" + File("err")).c_str());
    }
    std::string Bytes(const std::string& name) const {
        std::ifstream file(File(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    int Prepare(const PrepareJob& job, PrepareProgress& progress) const {
        const int status = Run(job.Arguments());
        progress.TakeOutput(Bytes("out"));
        progress.TakeErrors(Bytes("err"));
        progress.Finish();
        return status;
    }

private:
    std::filesystem::path folder_;
};

TEST_F(PrepareRunTest, UnderstandsTheProgram) {
    PrepareJob job;
    job.scans = {File("ein sc\xc3\xa4n.las")};
    job.target = PrepareJob::TargetFor(job.scans.front());
    job.tree = "kd";
    ASSERT_EQ(Run({"sample", job.scans.front(), "--points", "20000"}), 0);
    ASSERT_EQ(Run({"prepare", "--help"}), 0);
    const std::vector<std::string> units = unitsInHelp(Bytes("out"));
    EXPECT_THAT(units, testing::IsSupersetOf({"auto", "us-ft", "Feet", "Meters"}));
    // The program takes each of them.
    for (const std::string& unit : units) {
        job.unit = unit;
        PrepareProgress progress;
        ASSERT_EQ(Prepare(job, progress), 0) << unit << ": " << progress.LastSentence();
        ASSERT_TRUE(progress.GetSummary());
        EXPECT_EQ(progress.GetSummary()->points, 20000U);
        EXPECT_EQ(progress.GetSummary()->unit,
                  unit == "auto" ? "Meters" : (unit == "us-ft" ? "Feet" : unit));
        EXPECT_THAT(progress.Words(), HasSubstr("writing file"));
        EXPECT_EQ(progress.Share(), 1.0);
    }
    const std::string prepared = Bytes("ein sc\xc3\xa4n.vpt");
    job.scans.push_back(File("none.las"));
    PrepareProgress progress;
    EXPECT_NE(Prepare(job, progress), 0);
    EXPECT_THAT(progress.LastSentence(), HasSubstr("none.las' does not exist"));
    EXPECT_EQ(Bytes("ein sc\xc3\xa4n.vpt"), prepared);
}

TEST(PrepareJobTest, ProposesATargetBesideTheScan) {
    EXPECT_EQ(PrepareJob::TargetFor("/a.b/scan"), "/a.b/scan.vpt");
    EXPECT_EQ(PrepareJob::TargetFor("/a/.hidden"), "/a/.hidden.vpt");
    EXPECT_EQ(PrepareJob::TargetFor("/a/b.tar.las"), "/a/b.tar.vpt");
}

}  // namespace
}  // namespace vpc::viewer
