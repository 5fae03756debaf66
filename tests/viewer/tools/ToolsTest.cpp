#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <glm/geometric.hpp>

#include "viewer/camera/CameraHistory.h"
#include "viewer/camera/Ray.h"
#include "viewer/camera/StandardView.h"
#include "viewer/document/SectionMaker.h"
#include "viewer/document/UndoStack.h"
#include "viewer/tools/ClipTool.h"
#include "viewer/tools/NavigationTool.h"
#include "viewer/tools/PickTool.h"
#include "viewer/tools/SectionTool.h"
#include "viewer/tools/ToolRouter.h"
#include "viewer/tools/WalkTool.h"

namespace vpc::viewer {
namespace {

using ::testing::HasSubstr;

/// A window without a window. Its points are the corners of a box.
class FakeHost : public ToolHost {
public:
    FakeHost() { history.Keep(camera); }

    const ViewCamera& Camera() const override { return camera; }
    void SetCamera(const ViewCamera& wanted) override { camera = wanted; }
    void KeepView() override { history.Keep(camera); }
    draw::ImageSize PictureSize() const override { return {1000, 800}; }
    std::optional<glm::dvec3> PlaceAt(const glm::ivec2& pixel) const override {
        for (const glm::dvec3& corner : box.Corners())
            if (const auto place = placeOf(camera, PictureSize(), corner))
                if (glm::distance(*place, middleOf(pixel)) < 2.0) return corner;
        return std::nullopt;
    }
    Box ShownBox() const override { return box; }
    const Drawing& GetDrawing() const override { return undo.Current(); }
    void Preview(const Drawing& drawing) override { preview = drawing; }
    void Change(const std::string& label, const Drawing& drawing) override {
        preview.reset();
        undo.Do(label, drawing);
    }
    void PickAt(const glm::ivec2& pixel,
                std::function<void(const std::optional<Pick>&)> done) override {
        asked = [this, pixel, done] {
            const auto place = PlaceAt(pixel);
            done(place ? std::optional(Pick{*place, {255, 0, 16}, 1}) : std::nullopt);
        };
    }
    void CopyText(const std::string& text) override { copied = text; }
    void Say(const std::string& sentence) override { said = sentence; }
    void RedrawShapes() override {}
    void EndTool() override { isEnded = true; }

    glm::ivec2 PixelOf(const glm::dvec3& place) const {
        return glm::ivec2(glm::floor(placeOf(camera, PictureSize(), place).value()));
    }

    Box box{{5e6, 5e6, 0.0}, {5e6 + 40.0, 5e6 + 30.0, 20.0}};
    ViewCamera camera = standardView(StandardView::Isometric, box, PictureSize(), true);
    CameraHistory history;
    UndoStack undo;
    std::optional<Drawing> preview;
    std::function<void()> asked;
    std::string copied;
    std::string said;
    bool isEnded = false;
};

class ToolsTest : public ::testing::Test {
protected:
    static MouseInput At(const glm::ivec2& place, MouseButton button = MouseButton::Left) {
        return {place, button, false, false, false, false};
    }
    void Click(const glm::ivec2& place, bool isDouble = false) {
        MouseInput input = At(place);
        input.isDouble = isDouble;
        router.Press(input);
        router.Release(At(place));
    }
    void Drag(const glm::ivec2& from, const glm::ivec2& to, MouseButton button = MouseButton::Left,
              const std::vector<glm::ivec2>& between = {}) {
        router.Press(At(from, button));
        for (const glm::ivec2& place : between) router.Move(At(place, MouseButton::None));
        router.Release(At(to, button));
    }
    void ClickAndAnswer(const glm::dvec3& place) {
        Click(host.PixelOf(place));
        ASSERT_TRUE(host.asked);
        std::exchange(host.asked, nullptr)();
    }
    Shapes Shown() const {
        Shapes shapes;
        router.AddShapes(shapes);
        return shapes;
    }

    FakeHost host;
    NavigationTool navigation{host};
    ToolRouter router{navigation};
};

TEST_F(ToolsTest, ADragIsTheSameWhateverEventsWereLostAndIsOneStepBack) {
    const ViewCamera start = host.camera;
    const glm::dvec3 corner = host.box.max;
    const glm::ivec2 from = host.PixelOf(corner);
    for (const MouseButton button : {MouseButton::Left, MouseButton::Middle, MouseButton::Right}) {
        Drag(from, {300, 420}, button, {{900, 20}, {-50, 3000}, {310, 400}});
        const ViewCamera slow = host.camera;
        EXPECT_EQ(host.history.Back(), start);
        EXPECT_FALSE(host.history.CanGoBack());
        host.camera = start;
        Drag(from, {300, 420}, button);
        EXPECT_EQ(host.camera, slow);
        EXPECT_FALSE(slow == start);
        const glm::dvec2 expected = button == MouseButton::Middle
                                        ? glm::dvec2(glm::ivec2(300, 420) - from)
                                        : glm::dvec2(0.0);
        const glm::dvec2 way = placeOf(slow, host.PictureSize(), corner).value() -
                               placeOf(start, host.PictureSize(), corner).value();
        EXPECT_LT(glm::distance(way, expected), 1e-3);
        host.camera = *host.history.Back();
    }
    // A press with another button does not disturb a drag, and a lost mouse ends it.
    router.Press(At(from));
    EXPECT_EQ(Shown().marks.at(0).place, corner);
    router.Press(At({1, 1}, MouseButton::Right));
    router.Release(At({1, 1}, MouseButton::Right));
    EXPECT_TRUE(router.IsPressed());
    router.Cancel();
    EXPECT_FALSE(router.IsPressed());
    EXPECT_TRUE(Shown().marks.empty());
    // A drag that comes back leads nowhere.
    const glm::ivec2 other = host.PixelOf(host.box.min);
    Drag(from, from, MouseButton::Left, {{400, 300}});
    EXPECT_EQ(host.PixelOf(host.box.min), other);
    EXPECT_FALSE(host.history.CanGoBack());
}

TEST_F(ToolsTest, TheWheelIsOneStepBackAndADoubleClickHoldsThePivot) {
    const ViewCamera start = host.camera;
    const glm::dvec3 corner = host.box.max;
    for (int i = 0; i < 5; ++i) navigation.Zoom(host.PixelOf(corner), 1.0);
    EXPECT_EQ(Shown().marks.at(0).place, corner);
    navigation.Rest();
    navigation.Rest();
    EXPECT_TRUE(Shown().marks.empty());
    EXPECT_LT(glm::distance(host.camera.eye, corner), 0.34 * glm::distance(start.eye, corner));
    EXPECT_EQ(host.history.Back(), start);
    host.camera = start;

    Click(host.PixelOf(corner), true);
    const glm::dvec2 before = placeOf(host.camera, host.PictureSize(), corner).value();
    Drag({20, 20}, {220, 90});
    EXPECT_LT(glm::distance(placeOf(host.camera, host.PictureSize(), corner).value(), before),
              1e-3);
    EXPECT_EQ(Shown().marks.size(), 1U);
    EXPECT_TRUE(router.Key(ToolKey::Escape));
    EXPECT_TRUE(Shown().marks.empty());
    // Nothing to see, and the view still turns and zooms.
    host.box = {};
    const ViewCamera turned = host.camera;
    Drag({20, 20}, {220, 90});
    navigation.Zoom({500, 400}, 3.0);
    EXPECT_GT(glm::distance(host.camera.eye, turned.eye), 1.0);
}

TEST_F(ToolsTest, WalkingGoesOnWhileLookingAround) {
    host.camera = withPerspective(host.camera, false);
    WalkTool walk(host);
    router.Use(&walk);
    EXPECT_TRUE(host.camera.perspective);
    const glm::dvec3 eye = host.camera.eye;
    walk.Walk(3.0, 0.0, 0.0);
    EXPECT_NEAR(host.camera.eye.z, eye.z, 1e-9);
    EXPECT_NEAR(glm::distance(host.camera.eye, eye), 3.0 * walk.Pace(), 1e-6);
    const double pace = walk.Pace();
    walk.ChangePace(2.0);
    EXPECT_EQ(walk.Pace(), 2.0 * pace);
    router.Press(At({500, 400}));
    const glm::dvec3 ahead = host.camera.Ahead();
    router.Move(At({600, 400}));
    walk.Walk(1.0, 0.0, 0.0);
    const ViewCamera stepped = host.camera;
    router.Release(At({500, 400}));
    EXPECT_EQ(host.camera.eye, stepped.eye);
    EXPECT_NEAR(glm::distance(host.camera.Ahead(), ahead), 0.0, 1e-6);
    walk.OnKey(ToolKey::Escape);
    EXPECT_TRUE(host.isEnded);
}

TEST_F(ToolsTest, PicksAreToldMeasuredCopiedAndCleared) {
    Drawing drawing;
    drawing.entities.resize(1);
    drawing.entities[0].id = 1;
    drawing.entities[0].name = "hall\t1";
    host.Change("open", drawing);
    auto pick = std::make_unique<PickTool>(host);
    router.Use(pick.get());
    ClickAndAnswer(host.box.max);
    EXPECT_THAT(host.said, HasSubstr("5000040, 5000030, 20, colour #ff0010, hall\t1"));
    EXPECT_FALSE(pick->Measured());
    Click({2, 2});
    std::exchange(host.asked, nullptr)();
    EXPECT_THAT(host.said, HasSubstr("no point there"));
    const glm::dvec3 second(host.box.min.x, host.box.max.y, host.box.max.z);
    ClickAndAnswer(second);
    EXPECT_EQ(pick->Measured().value().offset, glm::dvec3(-40.0, 0.0, 0.0));
    router.Key(ToolKey::Copy);
    EXPECT_EQ(host.copied,
              "5000040\t5000030\t20\t255\t0\t16\thall 1\n5000000\t5000030\t20\t255\t0\t16\thall 1\n"
              "40\t-40\t0\t0\n");
    EXPECT_EQ(Shown().lines.size(), 1U);
    EXPECT_EQ(Shown().labels.size(), 3U);
    ClickAndAnswer(host.box.max);  // begins anew
    Click(host.PixelOf(host.box.max), true);
    std::exchange(host.asked, nullptr)();
    EXPECT_EQ(pick->Picks().size(), 1U);  // a double click means one point

    // A drag turns the view and picks nothing.
    const ViewCamera before = host.camera;
    Drag({500, 400}, {600, 400});
    EXPECT_FALSE(host.asked);
    EXPECT_GT(glm::distance(host.camera.eye, before.eye), 1.0);
    // What a click would take is marked; the newest place counts, and one question is on its way.
    const auto snaps = [&] { return Shown().marks.size() - pick->Picks().size(); };
    const auto answer = [&] { std::exchange(host.asked, nullptr)(); };
    const auto moveTo = [&](const glm::ivec2& to) { router.Move(At(to, MouseButton::None)); };
    moveTo({2, 2});
    const auto first = std::exchange(host.asked, nullptr);
    moveTo({3, 3});
    moveTo(host.PixelOf(host.box.max));
    EXPECT_FALSE(host.asked);
    first();
    EXPECT_EQ(snaps(), 0U);
    answer();
    EXPECT_EQ(snaps(), 1U);
    EXPECT_EQ(Shown().marks.at(0).place, host.box.max);
    EXPECT_FALSE(host.asked);
    router.Leave();
    EXPECT_EQ(snaps(), 0U);
    moveTo(host.PixelOf(host.box.max));
    router.Press(At({500, 400}));
    answer();
    EXPECT_EQ(snaps(), 0U);
    router.Cancel();
    // Answers that come too late do nothing.
    Click({500, 400});
    router.Key(ToolKey::Escape);
    std::exchange(host.asked, nullptr)();
    EXPECT_TRUE(pick->Picks().empty());
    Click({500, 400});
    router.Use(nullptr);
    pick.reset();
    host.asked();
}

TEST_F(ToolsTest, ASectionIsDraggedAlongItsNormalAsOneStep) {
    host.Change("add", withSection({}, sectionAcross(Axis::X, host.box)));
    for (const bool perspective : {true, false}) {
        host.camera =
            standardView(StandardView::Isometric, host.box, host.PictureSize(), perspective);
        SectionTool tool(host, SectionTool::Mode::Move);
        router.Use(&tool);
        const glm::dvec3 handle = host.box.Centre();
        const Section before = host.GetDrawing().sections[0];
        const glm::ivec2 to = host.PixelOf(handle + glm::dvec3(7.0, 0.0, 0.0));
        router.Press(At(host.PixelOf(handle)));
        router.Move(At({3, 3}, MouseButton::None));
        EXPECT_TRUE(host.preview);
        router.Release(At(to));
        const Section after = host.GetDrawing().sections[0];
        EXPECT_NEAR(after.point.x, before.point.x + 7.0, 0.2);
        EXPECT_EQ(after.normal, before.normal);
        EXPECT_EQ(host.undo.UndoLabel(), "move section");
        EXPECT_TRUE(host.undo.Undo());
        EXPECT_EQ(host.GetDrawing().sections[0], before);
        // Escape puts it back; a click changes nothing.
        router.Press(At(host.PixelOf(handle)));
        router.Move(At(to, MouseButton::None));
        router.Key(ToolKey::Escape);
        router.Release(At(to));
        EXPECT_EQ(host.preview, host.undo.Current());
        EXPECT_EQ(host.GetDrawing().sections[0], before);
        Click(host.PixelOf(handle));
        EXPECT_EQ(host.undo.UndoLabel(), "add");
        host.preview.reset();
    }
    // Beside the outline, the drag turns the view.
    SectionTool tool(host, SectionTool::Mode::Move);
    router.Use(&tool);
    const ViewCamera before = host.camera;
    Drag({5, 5}, {100, 5});
    EXPECT_NE(host.camera, before);
    // Looked at along its normal, it still moves: upwards is away.
    host.camera = standardView(StandardView::Left, host.box, host.PictureSize(), true);
    const glm::ivec2 middle(500, 400);
    Drag(middle, {500, 300});
    EXPECT_GT(host.GetDrawing().sections[0].point.x, host.box.Centre().x + 1.0);
    EXPECT_LT(host.GetDrawing().sections[0].point.x, host.box.max.x + 100.0);
    router.Move(At({500, 400}, MouseButton::None));
    router.Leave();
    EXPECT_FALSE(router.Key(ToolKey::Delete));
    router.Move(At({500, 400}, MouseButton::None));
    router.Key(ToolKey::Delete);
    EXPECT_TRUE(host.GetDrawing().sections.empty());
    // A plane that was dragged out of what is shown has a handle still.
    host.Change("far", withSection({}, moved(sectionAcross(Axis::X, host.box), 60.0)));
    host.camera = standardView(StandardView::Top, host.box, host.PictureSize(), true);
    const glm::dvec3 outside = host.box.Centre() + glm::dvec3(60.0, 0.0, 0.0);
    Drag(host.PixelOf(outside), host.PixelOf(host.box.Centre()));
    EXPECT_NEAR(host.GetDrawing().sections.at(0).point.x, host.box.Centre().x, 0.2);
}

TEST_F(ToolsTest, ThreePicksMakeASection) {
    SectionTool tool(host, SectionTool::Mode::ThreePicks);
    router.Use(&tool);
    const glm::dvec3 top = host.box.max;
    const glm::dvec3 beside(host.box.min.x, top.y, top.z);
    ClickAndAnswer(top);
    ClickAndAnswer(beside);
    ClickAndAnswer(beside);  // counts once
    EXPECT_EQ(tool.Places().size(), 2U);
    EXPECT_EQ(Shown().marks.size(), 2U);
    ClickAndAnswer(top);
    EXPECT_THAT(host.said, HasSubstr("lie on a line"));
    ClickAndAnswer({top.x, host.box.min.y, top.z});
    ASSERT_EQ(host.GetDrawing().sections.size(), 1U);
    EXPECT_NEAR(host.GetDrawing().sections[0].normal.z, -1.0, 1e-9);
    EXPECT_EQ(tool.GetMode(), SectionTool::Mode::Move);
    EXPECT_EQ(Shown().lines.size(), 5U);  // the outline and the normal
    EXPECT_EQ(host.undo.UndoLabel(), "add section");
}

TEST_F(ToolsTest, ClipsAreDrawnInAParallelView) {
    ClipTool boxTool(host, ClipTool::Shape::Box, true);
    EXPECT_THAT(host.said, HasSubstr("parallel"));
    ASSERT_FALSE(host.camera.perspective);
    const ViewCamera start = host.camera;
    router.Use(&boxTool);
    Click({100, 100});
    EXPECT_TRUE(host.GetDrawing().clips.empty());
    router.Press(At({100, 100}));
    router.Move(At({300, 300}, MouseButton::None));
    EXPECT_EQ(Shown().lines.size(), 4U);
    EXPECT_EQ(host.PixelOf(boxTool.Corners().at(2)), glm::ivec2(300, 300));
    router.Cancel();
    EXPECT_TRUE(boxTool.Corners().empty());
    EXPECT_EQ(host.camera, start);
    Drag({100, 100}, {700, 500}, MouseButton::Left, {{300, 900}});
    EXPECT_TRUE(Shown().lines.empty());
    ASSERT_EQ(host.GetDrawing().clips.size(), 1U);
    EXPECT_TRUE(host.isEnded);
    const Clip clip = host.GetDrawing().clips[0];
    const ClipPlane plane{clip.origin, clip.xAxis, clip.yAxis};
    EXPECT_EQ(host.PixelOf(plane.Place(clip.corners.at(2))), glm::ivec2(700, 500));

    ClipTool polygon(host, ClipTool::Shape::Polygon, false);
    router.Use(&polygon);
    const std::vector<glm::ivec2> crossed{{100, 100}, {300, 300}, {300, 100}, {100, 300}};
    for (const glm::ivec2& corner : crossed) Click(corner);
    router.Key(ToolKey::Enter);
    EXPECT_THAT(host.said, HasSubstr("crosses itself"));
    router.Key(ToolKey::Backspace);
    // The view may be slid and turned between two corners.
    Drag({500, 400}, {520, 380}, MouseButton::Middle);
    Drag({500, 400}, {520, 380});
    EXPECT_EQ(polygon.Corners().size(), 3U);
    Click({400, 50});
    Click({400, 50}, true);
    ASSERT_EQ(host.GetDrawing().clips.size(), 2U);
    EXPECT_EQ(host.GetDrawing().clips[1].corners.size(), 4U);
    EXPECT_FALSE(host.GetDrawing().clips[1].keepsInside);
    EXPECT_EQ(host.GetDrawing().clips[1].name, "Clip 2");
}

}  // namespace
}  // namespace vpc::viewer
