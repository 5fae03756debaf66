#include "viewer/window/WindowTest.h"

namespace vpc::test {
namespace {

class PrepareTest : public WindowTest {
protected:
    PrepareTest() { std::filesystem::remove(folder.file("t.vpt")); }
    /// Starts a preparation and stops its process, so that it cannot be done before `meanwhile`.
    template <class Meanwhile>
    void meetInTheMiddle(ViewerRun& viewer, const Meanwhile& meanwhile) const {
        viewer.CloseDialog("dialog/Prepare");
        ASSERT_TRUE(ProgramRun::waitUntil([&] { return !viewer.Children().empty(); }));
        const pid_t child = viewer.Children().front();
        kill(child, SIGSTOP);
        meanwhile();
        kill(child, SIGCONT);
        EXPECT_TRUE(ProgramRun::waitUntil([&] { return kill(child, 0) != 0; }));
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
    ViewerRun viewer = start("t.las");
    meetInTheMiddle(viewer, [&] {
        EXPECT_EQ(viewer.Report()["preparing"][0]["state"], "running");
        viewer.ClickControl("preparing/0/cancel");
    });
    viewer.ReportWhen([](const auto& report) {
        return report["preparing"].empty() || report["preparing"][0]["state"] == "cancelled";
    });
    EXPECT_EQ(viewer.Last()["entities"].size(), 0U);
    viewer.Close();
}

TEST_F(PrepareTest, ClosingEndsAPreparation) {
    ViewerRun viewer = start("t.las");
    meetInTheMiddle(viewer, [&] {
        viewer.CloseTop();
        viewer.AcceptSystemDialog();
    });
    viewer.WaitForEnd();
}

}  // namespace
}  // namespace vpc::test
