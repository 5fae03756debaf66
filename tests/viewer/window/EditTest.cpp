#include "viewer/window/WindowTest.h"

namespace vpc::test {
namespace {

class EditTest : public WindowTest {};

TEST_F(EditTest, RecoloursByThePaletteAndUndoes) {
    ViewerRun viewer = start("t.vpt");
    ASSERT_TRUE(comesToShowSquares(viewer));
    const draw::Image before = viewer.Picture();
    viewer.ClickControl("palette/Stylization");
    viewer.Key("Down");
    viewer.Key("Return");
    EXPECT_EQ(viewer.Report()["entities"][0]["stylization"], 4);
    const auto isOther = [&](const auto& picture) { return difference(picture, before) > 0.1; };
    EXPECT_TRUE(isOther(viewer.PictureWhen(isOther)));
    viewer.Key("Control_L+z");
    EXPECT_EQ(viewer.Report()["entities"][0]["stylization"], 1);
    EXPECT_TRUE(comesToShow(viewer, before));
    viewer.Key("Control_L+y");
    EXPECT_EQ(viewer.Report()["entities"][0]["stylization"], 4);
    viewer.Close();
}

TEST_F(EditTest, ASectionHalvesThePoints) {
    ViewerRun viewer = start("t.vpt");
    viewer.ClickControl("section/add X");
    EXPECT_EQ(viewer.Report()["shown"], allPoints / 2);
    viewer.ClickControl("section/0/enabled");
    EXPECT_EQ(viewer.Report()["shown"], allPoints);
    viewer.ClickControl("section/0/enabled");
    viewer.Report();
    viewer.ClickControl("section/0/remove");
    EXPECT_EQ(viewer.Report()["sections"].size(), 0U);
    EXPECT_EQ(viewer.Report()["shown"], allPoints);
    viewer.Key("Control_L+z");
    EXPECT_EQ(viewer.Report()["shown"], allPoints / 2);
    viewer.Close();
}

TEST_F(EditTest, TheBudgetBoundsThePoints) {
    ViewerRun viewer = start("t.vpt --budget 50000");
    EXPECT_LE(viewer.Last()["shown"], 50'000);
    EXPECT_GT(viewer.Last()["shown"], 5'000);
    EXPECT_EQ(viewer.Last()["total"], allPoints);
    EXPECT_TRUE(comesToShowSquares(viewer));
    viewer.ClickControl("budget", 0.9);
    const auto& report = viewer.Report();
    EXPECT_GT(report["budget"], allPoints);
    EXPECT_EQ(report["shown"], allPoints);
    viewer.Close();
}

TEST_F(EditTest, MovesTwoFilesApart) {
    makeScene("u");
    ViewerRun viewer = start("t.vpt u.vpt");
    EXPECT_EQ(viewer.Last()["shown"], 2 * allPoints);
    viewer.ClickControl("entity/2");
    viewer.Report();
    viewer.Enter("palette/Insertion X", "100");
    viewer.Report();
    viewer.Key("Home");
    const auto& entities = viewer.Report()["entities"];
    EXPECT_EQ(entities[0]["location"], nlohmann::json({0.0, 0.0, 0.0}));
    EXPECT_EQ(entities[1]["location"], nlohmann::json({100.0, 0.0, 0.0}));
    EXPECT_TRUE(comesToShowSquares(viewer));
    viewer.Close();
}

}  // namespace
}  // namespace vpc::test
