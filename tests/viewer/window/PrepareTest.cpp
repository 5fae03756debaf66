#include "support/LasBuilder.h"
#include "viewer/window/WindowTest.h"

namespace vpc::test {
namespace {

class PrepareTest : public WindowTest {
protected:
    PrepareTest() { std::filesystem::remove(folder.file("t.vpt")); }
    /// Makes the scan so large that its preparation goes on until it is ended.
    void makeEndless() const {
        LasBuilder scan;
        scan.format = 0;
        scan.legacyCount = 200'000'000;
        write("t.las", scan.bytes());
        // The points are a hole, which takes no room.
        const std::filesystem::path file = folder.file("t.las");
        std::filesystem::resize_file(file,
                                     std::filesystem::file_size(file) + *scan.legacyCount * 20ULL);
    }
    /// The process of a preparation that begins.
    static pid_t begin(ViewerRun& viewer) {
        viewer.CloseDialog("dialog/Prepare");
        ProgramRun::waitUntil([&] { return !viewer.Children().empty(); });
        return viewer.Children().at(0);
    }
    void expectNothingLeftBy(pid_t process) const {
        EXPECT_TRUE(ProgramRun::waitUntil([&] { return kill(process, 0) != 0; }));
        std::set<std::string> names = folder.names();
        std::erase_if(names, [](const auto& name) { return name.find("home") == 0; });
        names.erase("report.json");
        EXPECT_EQ(names, (std::set<std::string>{"t.las", "work"}));
    }
};

TEST_F(PrepareTest, PreparesAScanAndOpensIt) {
    ViewerRun viewer = start("t.las");
    ASSERT_NE(viewer.Last()["dialog"], "");
    viewer.CloseDialog("dialog/Prepare");
    viewer.ReportWhen([](const auto& report) { return !report["entities"].empty(); });
    EXPECT_EQ(viewer.Last()["preparing"][0]["state"], "done");
    EXPECT_EQ(viewer.Last()["shown"], allPoints);
    EXPECT_TRUE(comesToShowSquares(viewer));
    viewer.Close();
}

TEST_F(PrepareTest, ACancelledPreparationLeavesNothing) {
    makeEndless();
    ViewerRun viewer = start("t.las");
    const pid_t process = begin(viewer);
    EXPECT_EQ(viewer.Report()["preparing"][0]["state"], "running");
    viewer.ClickControl("preparing/0/cancel");
    expectNothingLeftBy(process);
    viewer.ReportWhen([](const auto& report) {
        return report["preparing"].empty() || report["preparing"][0]["state"] == "cancelled";
    });
    EXPECT_EQ(viewer.Last()["entities"].size(), 0U);
    viewer.Close();
}

TEST_F(PrepareTest, ClosingEndsAPreparation) {
    makeEndless();
    ViewerRun viewer = start("t.las");
    const pid_t process = begin(viewer);
    viewer.CloseTop();
    viewer.AcceptSystemDialog();
    expectNothingLeftBy(process);
    viewer.WaitForEnd();
}

}  // namespace
}  // namespace vpc::test
