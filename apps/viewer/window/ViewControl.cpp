#include "viewer/window/ViewControl.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <wx/clipbrd.h>

#include "viewer/camera/CameraGuard.h"
#include "viewer/camera/Ray.h"
#include "viewer/panels/Text.h"
#include "viewer/tools/ClipTool.h"
#include "viewer/tools/SectionTool.h"

namespace vpc::viewer {

namespace {

constexpr int turnPixels = 40;
constexpr double lookAngle = 0.05;
/// A share of a pace for each repetition of a held key.
constexpr double keyPace = 0.25;
constexpr double pointSizeStep = 1.25;

std::optional<ToolKey> toolKeyOf(int key) {
    switch (key) {
        case WXK_ESCAPE:
            return ToolKey::Escape;
        case WXK_RETURN:
        case WXK_NUMPAD_ENTER:
            return ToolKey::Enter;
        case WXK_DELETE:
        case WXK_NUMPAD_DELETE:
            return ToolKey::Delete;
        case WXK_BACK:
            return ToolKey::Backspace;
        default:
            return {};
    }
}

/// Which way a key of the arrows leads, to the right and downwards; 0, 0 for another key.
glm::ivec2 arrowOf(int key) {
    switch (key) {
        case WXK_LEFT:
            return {-1, 0};
        case WXK_RIGHT:
            return {1, 0};
        case WXK_UP:
            return {0, -1};
        case WXK_DOWN:
            return {0, 1};
        default:
            return {0, 0};
    }
}

}  // namespace

ViewControl::ViewControl(Workspace& workspace, Engine& engine, FrameLoop& frames,
                         UpdateLoop& updates, ViewPanel& panel, Window window)
    : workspace_(workspace),
      engine_(engine),
      frames_(frames),
      updates_(updates),
      panel_(panel),
      window_(std::move(window)),
      navigation_(*this),
      router_(navigation_) {
}

void ViewControl::UseTool(ToolKind kind) {
    Rest();
    router_.Use(nullptr);
    workspace_.EndPreview();
    picking_ = nullptr;
    walking_ = nullptr;
    tool_.reset();
    kind_ = kind;
    window_.say({});
    tool_ = MakeTool(kind);
    router_.Use(tool_.get());
    window_.shapesChanged();
    window_.stateChanged();
}

std::unique_ptr<Tool> ViewControl::MakeTool(ToolKind kind) {
    using Shape = ClipTool::Shape;
    switch (kind) {
        case ToolKind::Navigate:
            break;
        case ToolKind::Walk: {
            auto walking = std::make_unique<WalkTool>(*this);
            walking_ = walking.get();
            return walking;
        }
        case ToolKind::Pick: {
            auto picking = std::make_unique<PickTool>(*this);
            picking_ = picking.get();
            return picking;
        }
        case ToolKind::MoveSection:
            return std::make_unique<SectionTool>(*this, SectionTool::Mode::Move);
        case ToolKind::SectionThroughPicks:
            return std::make_unique<SectionTool>(*this, SectionTool::Mode::ThreePicks);
        case ToolKind::ClipBoxInside:
            return std::make_unique<ClipTool>(*this, Shape::Box, true);
        case ToolKind::ClipBoxOutside:
            return std::make_unique<ClipTool>(*this, Shape::Box, false);
        case ToolKind::ClipPolygonInside:
            return std::make_unique<ClipTool>(*this, Shape::Polygon, true);
        case ToolKind::ClipPolygonOutside:
            return std::make_unique<ClipTool>(*this, Shape::Polygon, false);
    }
    return nullptr;
}

void ViewControl::AddShapes(Shapes& shapes) const {
    router_.AddShapes(shapes);
    if (kind_ != ToolKind::MoveSection && kind_ != ToolKind::SectionThroughPicks)
        addSectionShapes(shapes, workspace_.Shown(), workspace_.ShownBox());
}

void ViewControl::Copy() {
    router_.Key(ToolKey::Copy);
}

void ViewControl::Fit() {
    Go(fit(camera_, ShownBox(), PictureSize()));
}

void ViewControl::ShowFrom(StandardView view) {
    Go(standardView(view, ShownBox(), PictureSize(), camera_.perspective));
}

void ViewControl::SetPerspective(bool perspective) {
    Go(clearOf(withPerspective(camera_, perspective), ShownBox()));
}

void ViewControl::Go(const ViewCamera& camera) {
    Rest();
    SetCamera(camera);
    KeepView();
}

void ViewControl::SetHorizon(Horizon horizon) {
    Rest();
    navigation_.SetHorizon(horizon);
    window_.stateChanged();
}

void ViewControl::GoBack() {
    Rest();
    if (const std::optional<ViewCamera> camera = history_.Back()) SetCamera(*camera);
    window_.stateChanged();
}

void ViewControl::GoForward() {
    Rest();
    if (const std::optional<ViewCamera> camera = history_.Forward()) SetCamera(*camera);
    window_.stateChanged();
}

void ViewControl::BeginWith(const ViewCamera& camera) {
    history_ = CameraHistory();
    navigation_.Forget();
    SetCamera(camera);
    KeepView();
}

void ViewControl::BeginWithAll() {
    BeginWith(standardView(StandardView::Isometric, ShownBox(), PictureSize(), true));
}

void ViewControl::Redraw() {
    frames_.Draw(camera_, PictureSize(), workspace_.Shown().style);
}

void ViewControl::LookUnderCursor() {
    if (!cursor_) return;
    cursorPlace_ = frames_.PlaceAt(*cursor_);
    window_.cursorMoved();
}

void ViewControl::OnRest() {
    Rest();
    if (!cursor_ || router_.IsPressed()) return;
    // Another view lies under the cursor.
    MouseInput input;
    input.place = *cursor_;
    router_.Move(input);
}

void ViewControl::Rest() {
    navigation_.Rest();
    if (walking_ != nullptr) walking_->Rest();
}

void ViewControl::SetCamera(const ViewCamera& camera) {
    camera_ = guarded(camera, camera_);
    Redraw();
    updates_.AskAtRest();
}

void ViewControl::KeepView() {
    history_.Keep(camera_);
    window_.stateChanged();
}

draw::ImageSize ViewControl::PictureSize() const {
    return panel_.PictureSize();
}

std::optional<glm::dvec3> ViewControl::PlaceAt(const glm::ivec2& pixel) const {
    return frames_.PlaceAt(pixel);
}

void ViewControl::Change(const std::string& label, const Drawing& drawing) {
    workspace_.Change(label, drawing);
}

void ViewControl::PickAt(const glm::ivec2& pixel,
                         std::function<void(const std::optional<Pick>&)> done) {
    engine_.PickAt(camera_, PictureSize(), pixel, std::move(done));
}

void ViewControl::CopyText(const std::string& text) {
    wxClipboardLocker lock;
    if (!lock) return;  // another program has it
    // The clipboard deletes the text.
    wxTheClipboard->SetData(new wxTextDataObject(fromUtf8(text)));
}

void ViewControl::EndTool() {
    // Later, since it is the tool that calls.
    mailbox_.CallAfter([this] { UseTool(ToolKind::Navigate); });
}

void ViewControl::OnPress(const MouseInput& input) {
    router_.Press(input);
}

void ViewControl::OnRelease(const MouseInput& input) {
    router_.Release(input);
    cursor_ = input.place;
    LookUnderCursor();
}

void ViewControl::OnMove(const MouseInput& input) {
    router_.Move(input);
    cursor_ = input.place;
    if (!router_.IsPressed()) LookUnderCursor();
}

void ViewControl::OnCancel() {
    router_.Cancel();
}

void ViewControl::OnWheel(const MouseInput& input, double steps, bool isHorizontal) {
    if (input.control)
        ChangePointSize(steps);
    else if (isHorizontal || input.shift)
        navigation_.TurnBy({static_cast<int>(std::lround(steps * turnPixels)), 0});
    else if (walking_ != nullptr)
        walking_->Walk(steps, 0.0, 0.0);
    else
        navigation_.Zoom(input.place, steps);
}

void ViewControl::OnPinch(const MouseInput& input, double factor) {
    navigation_.Zoom(input.place, std::log(factor) / -std::log(zoomShare));
}

bool ViewControl::OnKey(const wxKeyEvent& event) {
    if (event.AltDown()) return false;
    if (!event.ControlDown() && ToolTakesKey(event.GetKeyCode())) return true;
    return walking_ != nullptr && !event.ControlDown() ? WalkByKey(event) : MoveByKey(event);
}

bool ViewControl::ToolTakesKey(int key) {
    const std::optional<ToolKey> toolKey = toolKeyOf(key);
    if (!toolKey) return false;
    if (router_.Key(*toolKey)) return true;
    if (*toolKey == ToolKey::Escape && kind_ != ToolKind::Navigate) UseTool(ToolKind::Navigate);
    return true;
}

bool ViewControl::MoveByKey(const wxKeyEvent& event) {
    const int key = event.GetKeyCode();
    const glm::ivec2 arrow = arrowOf(key);
    const draw::ImageSize size = PictureSize();
    const glm::ivec2 middle = cursor_.value_or(glm::ivec2(size.width / 2, size.height / 2));
    if (arrow != glm::ivec2(0, 0)) {
        if (event.ControlDown()) return false;
        if (event.ShiftDown())
            navigation_.SlideBy(arrow * turnPixels);
        else
            navigation_.TurnBy(arrow * turnPixels);
        return true;
    }
    if (event.ControlDown()) return false;
    switch (key) {
        case '+':
        case '=':
        case WXK_NUMPAD_ADD:
        case WXK_PAGEUP:
            navigation_.Zoom(middle, 1.0);
            return true;
        case '-':
        case WXK_NUMPAD_SUBTRACT:
        case WXK_PAGEDOWN:
            navigation_.Zoom(middle, -1.0);
            return true;
        case 'F':
        case WXK_HOME:
            Fit();
            return true;
        case 'P':
            SetPerspective(!camera_.perspective);
            return true;
        default:
            break;
    }
    const int number = key - '1';
    if (number < 0 || number >= static_cast<int>(standardViews.size())) return false;
    ShowFrom(standardViews[static_cast<std::size_t>(number)]);
    return true;
}

bool ViewControl::WalkByKey(const wxKeyEvent& event) {
    const double pace = event.ShiftDown() ? 4.0 * keyPace : keyPace;
    switch (event.GetKeyCode()) {
        case 'W':
        case WXK_UP:
            walking_->Walk(pace, 0.0, 0.0);
            return true;
        case 'S':
        case WXK_DOWN:
            walking_->Walk(-pace, 0.0, 0.0);
            return true;
        case 'D':
            walking_->Walk(0.0, pace, 0.0);
            return true;
        case 'A':
            walking_->Walk(0.0, -pace, 0.0);
            return true;
        case 'E':
        case WXK_PAGEUP:
            walking_->Walk(0.0, 0.0, pace);
            return true;
        case 'Q':
        case WXK_PAGEDOWN:
            walking_->Walk(0.0, 0.0, -pace);
            return true;
        case WXK_LEFT:
            walking_->Look(lookAngle, 0.0);
            return true;
        case WXK_RIGHT:
            walking_->Look(-lookAngle, 0.0);
            return true;
        case '+':
        case WXK_NUMPAD_ADD:
            walking_->ChangePace(2.0);
            return true;
        case '-':
        case WXK_NUMPAD_SUBTRACT:
            walking_->ChangePace(0.5);
            return true;
        default:
            return MoveByKey(event);
    }
}

void ViewControl::OnLeave() {
    cursor_.reset();
    cursorPlace_.reset();
    router_.Leave();
    window_.cursorMoved();
}

void ViewControl::OnResized(const draw::ImageSize&) {
    Redraw();
    updates_.AskAtRest();
}

void ViewControl::ChangePointSize(double steps) {
    ViewStyle style = workspace_.Kept().style;
    const double largest = 64.0;
    if (style.sizing == PointSizing::Automatic) {
        style.sizing = PointSizing::Fixed;
        style.pointSize = 2.0;
    }
    style.pointSize *= std::pow(pointSizeStep, steps);
    if (style.sizing == PointSizing::Fixed)
        style.pointSize = std::clamp(style.pointSize, 1.0, largest);
    window_.chooseStyle(style);
}

}  // namespace vpc::viewer
