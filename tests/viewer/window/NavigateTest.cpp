#include "support/Picture.h"
#include "viewer/window/WindowTest.h"

namespace vpc::test {
namespace {

class NavigateTest : public WindowTest {
protected:
    /// The place that the program sees at a pixel.
    static glm::dvec3 under(ViewerRun& viewer, const Pixel& pixel) {
        viewer.Move(pixel);
        return vectorOf(viewer.Report().at("cursor"));
    }
};

TEST_F(NavigateTest, TurnsSlidesAndZoomsAtTheCursorAndComesBack) {
    ViewerRun viewer = start("t.vpt");
    ASSERT_TRUE(comesToShowSquares(viewer));
    const draw::Image before = viewer.Picture();
    const auto camera = viewer.Camera();
    const auto entity = viewer.Last()["entities"][0];
    const Pixel pixel = viewer.PixelOf(placed(entity, square(2).middle)) + Pixel(7, -5);
    const glm::dvec3 place = under(viewer, pixel);
    const auto expectAt = [&](const Pixel& wanted) {
        viewer.Report();
        const Pixel now = viewer.PixelOf(place);
        EXPECT_LE(std::abs(now.x - wanted.x) + std::abs(now.y - wanted.y), 2);
        EXPECT_TRUE(comesToShowSquares(viewer));
        EXPECT_GT(difference(viewer.Picture(), before), 0.01);
    };
    viewer.Drag(pixel, pixel + Pixel(120, 40));
    expectAt(pixel);
    EXPECT_GT(glm::length(viewer.Camera().eye - camera.eye), 0.1 * camera.Distance());
    viewer.Drag(pixel, pixel + Pixel(-60, 30), 2);
    expectAt(pixel + Pixel(-60, 30));
    viewer.Wheel(pixel + Pixel(-60, 30), 1);
    expectAt(pixel + Pixel(-60, 30));
    EXPECT_LT(glm::length(viewer.Camera().eye - place), 0.97 * glm::length(camera.eye - place));
    for (int i = 0; i < 3; ++i) viewer.Key("Alt_L+Left");
    viewer.Report();
    EXPECT_EQ(viewer.Camera(), camera);
    EXPECT_TRUE(comesToShow(viewer, before));
    // A view that was left before it came to rest can be gone back to as well. One step of the
    // wheel, since a slow machine may find a rest between two.
    viewer.Wheel(pixel, 1);
    viewer.Key("Control_L+1");
    viewer.Report();
    for (const bool isStart : {false, true}) {
        viewer.Key("Alt_L+Left");
        viewer.Report();
        EXPECT_EQ(viewer.Camera() == camera, isStart);
    }
    viewer.Close();
}

class ScreenshotTest : public NavigateTest, public testing::WithParamInterface<const char*> {};

TEST_P(ScreenshotTest, SavesAPictureOfAnotherSize) {
    ViewerRun viewer = start(std::string("t.vpt --renderer ") + GetParam());
    viewer.ClickControl("tool/screenshot");
    viewer.Report();
    viewer.Enter("dialog/Width", "1500", "Tab");
    viewer.Enter("dialog/Height", "600", "Tab");
    viewer.CloseDialog("dialog/Save");
    viewer.AcceptSystemDialog();
    EXPECT_EQ(viewer.Report()["message"], "");
    const Picture saved(read("view.png"));
    ASSERT_EQ(saved.width, 1500U);
    ASSERT_EQ(saved.height, 600U);
    draw::Image picture({1500, 600}, {});
    for (std::size_t i = 0; i < picture.Size().Pixels(); ++i) {
        const auto& [red, green, blue] = saved.at(i % saved.width, i / saved.width);
        picture[i] = {red, green, blue};
    }
    EXPECT_TRUE(showsAllSquares(viewer, picture));
    EXPECT_TRUE(comesToShowSquares(viewer));
    const Pixel pixel = viewer.PixelOf(placed(viewer.Last()["entities"][0], square(2).middle));
    const glm::dvec3 place = under(viewer, pixel);
    EXPECT_LT(glm::distance(place, square(2).middle), 2.0 * step);
    viewer.Drag(pixel, pixel + Pixel(90, 20));
    viewer.Report();
    EXPECT_TRUE(comesToShowSquares(viewer));
    viewer.Close();
}

TEST_F(NavigateTest, SaysThatNoPictureIsSavedWithoutAnEngine) {
    ViewerRun viewer = start("--plugin /nowhere");
    for (int i = 0; i < 2; ++i) {
        viewer.ClickControl("tool/screenshot");
        viewer.Report();
        viewer.CloseDialog("dialog/Save");
        viewer.AcceptSystemDialog();
        EXPECT_THAT(viewer.Report()["message"], HasSubstr("view.png could not be saved"));
        EXPECT_EQ(viewer.Last()["status"][0], "");
    }
    viewer.Close();
}

INSTANTIATE_TEST_SUITE_P(Renderers, ScreenshotTest, testing::Values("cpu", "gl"),
                         [](const auto& test) { return std::string(test.param); });

TEST_F(NavigateTest, ClosesInTheMiddleOfUpdates) {
    for (const int milliseconds : {0, 150, 160, 170}) {
        ViewerRun viewer = start("t.vpt");
        viewer.Wheel({400, 300}, 1);
        // Where in its work that meets the program is left to chance.
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        viewer.Close();
    }
}

}  // namespace
}  // namespace vpc::test
