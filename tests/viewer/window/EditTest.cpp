#include "viewer/window/WindowTest.h"

namespace vpc::test {
namespace {

class EditTest : public WindowTest {
protected:
    /// How many points of the scene lie in a rectangle of the picture.
    static std::size_t pointsWithin(const ViewerRun& viewer, const Pixel& from, const Pixel& to) {
        const auto points = scene();
        const auto projection = viewer.Camera().ProjectionTo(viewer.Size());
        return static_cast<std::size_t>(std::count_if(points.begin(), points.end(), [&](auto& p) {
            const auto place = projection.Of({p.x, p.y, p.z});
            return place.column >= from.x && place.column <= to.x && place.row >= from.y &&
                   place.row <= to.y;
        }));
    }
};

TEST_F(EditTest, RecoloursByThePaletteAndUndoes) {
    ViewerRun viewer = start("t.vpt");
    ASSERT_TRUE(comesToShowSquares(viewer));
    const draw::Image before = viewer.Picture();
    const auto choose = [&](const std::string& line, int down) {
        viewer.ClickControl(line);
        viewer.Report();
        for (int i = 0; i < down; ++i) viewer.Key("Down");
        return viewer.Report()["entities"][0];
    };
    EXPECT_EQ(choose("palette/Stylization", 2)["stylization"], 4);
    const auto entity = choose("palette/Color scheme", 1);
    EXPECT_NE(entity["colourScheme"], "");
    const auto isOther = [&](const auto& picture) { return difference(picture, before) > 0.1; };
    EXPECT_TRUE(isOther(viewer.PictureWhen(isOther)));
    const draw::Image after = viewer.Picture();
    const auto undone = [&](const std::string& button) {
        viewer.ClickControl(button);
        return viewer.Report()["entities"][0];
    };
    EXPECT_EQ(undone("tool/undo")["stylization"], 4);
    while (viewer.Last()["undo"] != "") undone("tool/undo");
    EXPECT_EQ(viewer.Last()["entities"][0]["stylization"], 1);
    EXPECT_TRUE(comesToShow(viewer, before));
    while (viewer.Last()["redo"] != "") undone("tool/redo");
    EXPECT_EQ(viewer.Last()["entities"][0], entity);
    EXPECT_TRUE(comesToShow(viewer, after));
    viewer.Close();
}

TEST_F(EditTest, SectionsAndClipsKeepThePointsThatTheyShould) {
    ViewerRun viewer = start("t.vpt");
    const auto entity = viewer.Last()["entities"][0];
    const auto comesToKeep = [&](int kept, int cut) {
        const auto shows = [&](const auto& picture) {
            return showsSquare(viewer, picture, entity, kept) &&
                   !showsSquare(viewer, picture, entity, cut);
        };
        return shows(viewer.PictureWhen(shows));
    };
    viewer.ClickControl("tool/section-x");
    EXPECT_EQ(viewer.Report()["shown"], allPoints / 2);
    EXPECT_TRUE(comesToKeep(1, 0));
    const auto handle = vectorOf(viewer.Last()["sections"][0]["point"]);
    viewer.Drag(viewer.PixelOf(handle), viewer.PixelOf(handle + glm::dvec3(side / 2, 0, 0)));
    EXPECT_NEAR(viewer.Report()["sections"][0]["point"][0], handle.x + side / 2, 1.0);
    EXPECT_NEAR(viewer.Last()["shown"], allPoints / 4, 0.03 * allPoints);
    viewer.ClickControl("tool/undo");
    EXPECT_EQ(viewer.Report()["shown"], allPoints / 2);
    viewer.ClickControl("section/0/flip");
    viewer.Report();
    EXPECT_TRUE(comesToKeep(0, 1));
    viewer.ClickControl("section/0/enabled", 0.05);
    EXPECT_EQ(viewer.Report()["shown"], allPoints);
    viewer.ClickControl("section/0/remove");
    EXPECT_EQ(viewer.Report()["sections"].size(), 0U);

    viewer.ClickControl("tool/clip-box");
    viewer.Report();
    // A box around the middle of the square that lies lowest.
    const Pixel middle = viewer.PixelOf(placed(entity, square(0).middle));
    viewer.Drag(middle - Pixel(30, 20), middle + Pixel(30, 20));
    const auto& clips = viewer.Report()["clips"];
    ASSERT_EQ(clips.size(), 1U);
    EXPECT_EQ(viewer.Last()["shown"],
              pointsWithin(viewer, middle - Pixel(30, 20), middle + Pixel(30, 20)));
    viewer.Close();
}

TEST_F(EditTest, CutsAndTheirUndoLeaveTheStyleAlone) {
    ViewerRun viewer = start("t.vpt");
    viewer.ClickControl("tool/section-x");
    viewer.Report();
    viewer.Key("Alt_L+v");
    viewer.Key("r");
    ASSERT_EQ(viewer.Report()["style"]["roundPoints"], false);
    viewer.ClickControl("section/0/flip");
    EXPECT_EQ(viewer.Report()["undo"], "flip section");
    EXPECT_EQ(viewer.Last()["style"]["roundPoints"], false);
    viewer.ClickControl("tool/undo");
    EXPECT_EQ(viewer.Report()["style"]["roundPoints"], false);
    // Two clicks on one button remove one section.
    for (const std::string axis : {"y", "z"}) {
        viewer.ClickControl("tool/section-" + axis);
        viewer.Report();
    }
    viewer.ClickControl("section/2/remove");
    viewer.ClickControl("section/2/remove");
    EXPECT_EQ(viewer.Report()["sections"].size(), 2U);
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

TEST_F(EditTest, MovesTwoFilesApartAndGoesOnFromASession) {
    makeScene("u");
    nlohmann::json saved;
    {
        ViewerRun viewer = start("t.vpt u.vpt");
        EXPECT_EQ(viewer.Last()["shown"], 2 * allPoints);
        viewer.ClickControl("entity/2/name");
        viewer.Report();
        viewer.Enter("palette/Name", "moved", "Tab");
        EXPECT_EQ(viewer.Report()["entities"][1]["name"], "moved");
        // What is being edited is kept when another file is chosen.
        viewer.Enter("palette/Insertion X", "100", "0");
        viewer.ClickControl("entity/1/name");
        viewer.Report();
        viewer.ClickControl("tool/fit");
        const auto& entities = viewer.Report()["entities"];
        EXPECT_EQ(entities[0]["location"], nlohmann::json({0.0, 0.0, 0.0}));
        EXPECT_EQ(entities[1]["location"], nlohmann::json({1000.0, 0.0, 0.0}));
        EXPECT_TRUE(comesToShowSquares(viewer));
        viewer.ClickControl("tool/section-y");
        viewer.Report();
        viewer.ClickControl("entity/1/visible");
        viewer.Report();
        viewer.Key("Control_L+s");
        viewer.AcceptSystemDialog();
        saved = viewer.Report();
        EXPECT_EQ(saved["shown"], allPoints / 2);
        viewer.Close();
    }
    // A file that is away for a time stays in the session.
    std::filesystem::rename(folder.file("u.vpt"), folder.file("away.vpt"));
    {
        ViewerRun viewer = start("view.vpcview");
        EXPECT_THAT(viewer.Last()["message"], HasSubstr("u.vpt"));
        viewer.Key("Control_L+s");
        viewer.Report();
        viewer.Close();
    }
    std::filesystem::rename(folder.file("away.vpt"), folder.file("u.vpt"));
    ViewerRun viewer = start("view.vpcview");
    for (const std::string key : {"sections", "clips", "style", "budget", "shown", "message"})
        EXPECT_EQ(viewer.Last()[key], saved[key]) << key;
    EXPECT_LT(glm::length(viewer.Camera().eye - vectorOf(saved["camera"]["eye"])), 1e-6);
    for (const std::size_t i : {0U, 1U})
        for (const std::string key :
             {"file", "name", "visible", "location", "stylization", "shown"})
            EXPECT_EQ(viewer.Last()["entities"][i][key], saved["entities"][i][key]) << key;
    viewer.Close();
}

}  // namespace
}  // namespace vpc::test
