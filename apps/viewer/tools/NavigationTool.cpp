#include "viewer/tools/NavigationTool.h"

#include <numbers>
#include <utility>

#include "viewer/camera/Ray.h"
#include "viewer/camera/StandardView.h"

namespace vpc::viewer {

namespace {

constexpr draw::Colour turnColour{255, 170, 40};
constexpr draw::Colour heldColour{90, 200, 255};
/// Of a drag that zooms.
constexpr double pixelsPerStep = 16.0;
/// A step of the zoom that is always possible, as a share of what is shown.
constexpr double leastStepShare = 5e-5;

glm::ivec2 middleOf(const draw::ImageSize& size) {
    return {size.width / 2, size.height / 2};
}

}  // namespace

bool NavigationTool::OnPress(const MouseInput& input) {
    Rest();
    const bool turns = input.button == MouseButton::Left && !input.shift;
    if (turns && input.isDouble) Hold(input.place);
    switch (input.button) {
        case MouseButton::Left:
            Begin(turns ? Motion::Turn : Motion::Slide, input.place);
            return true;
        case MouseButton::Middle:
            Begin(Motion::Slide, input.place);
            return true;
        case MouseButton::Right:
            Begin(Motion::Zoom, input.place);
            return true;
        case MouseButton::None:
            break;
    }
    return false;
}

bool NavigationTool::OnDrag(const MouseInput& input) {
    if (motion_ == Motion::None) return false;
    dragged_ = true;
    Show(MovedTo(input.place));
    return true;
}

bool NavigationTool::OnRelease(const MouseInput& input) {
    if (motion_ == Motion::None) return false;
    if (dragged_ || input.place != press_) Show(MovedTo(input.place));
    dragged_ = input.place != press_;
    OnCancel();
    return true;
}

void NavigationTool::OnCancel() {
    if (std::exchange(dragged_, false)) host_.KeepView();
    motion_ = Motion::None;
    host_.RedrawShapes();
}

bool NavigationTool::OnKey(ToolKey key) {
    if (key != ToolKey::Escape || !held_) return false;
    held_.reset();
    host_.Say("The view turns around the place under the cursor again.");
    host_.RedrawShapes();
    return true;
}

void NavigationTool::AddShapes(Shapes& shapes) const {
    if (held_) shapes.marks.push_back({*held_, heldColour});
    const bool isHeld = motion_ == Motion::Turn && held_;
    if (motion_ != Motion::None && !isHeld)
        shapes.marks.push_back({grabbed_, turnColour});
    else if (motion_ == Motion::None && zoomedTo_)
        shapes.marks.push_back({*zoomedTo_, turnColour});
}

void NavigationTool::Zoom(const glm::ivec2& place, double steps) {
    if (motion_ != Motion::None) return;  // the wheel turns easily while its button is down
    zoomedTo_ = PivotAt(place);
    Show(zoom(host_.Camera(), *zoomedTo_, steps, LeastStep()));
    moved_ = true;
}

void NavigationTool::TurnBy(const glm::ivec2& pixels) {
    MoveBy(Motion::Turn, pixels);
}

void NavigationTool::SlideBy(const glm::ivec2& pixels) {
    MoveBy(Motion::Slide, pixels);
}

void NavigationTool::Rest() {
    if (!moved_ || motion_ != Motion::None) return;
    moved_ = false;
    zoomedTo_.reset();
    host_.KeepView();
    host_.RedrawShapes();
}

void NavigationTool::SetHorizon(Horizon horizon) {
    horizon_ = horizon;
    if (horizon != Horizon::Level) return;
    Show(levelled(host_.Camera()));
    host_.KeepView();
}

void NavigationTool::Forget() {
    pivot_.Forget();
    held_.reset();
    zoomedTo_.reset();
}

ViewCamera NavigationTool::MovedTo(const glm::ivec2& place) const {
    const glm::dvec2 way(place - press_);
    const double anglePerPixel = std::numbers::pi / host_.PictureSize().height;
    switch (motion_) {
        case Motion::Turn:
            return orbit(start_, grabbed_, -way.x * anglePerPixel, way.y * anglePerPixel, horizon_);
        case Motion::Slide:
            return pan(start_, host_.PictureSize(), grabbed_, glm::dvec2(press_),
                       glm::dvec2(place));
        case Motion::Zoom:
            return zoom(start_, grabbed_, -way.y / pixelsPerStep, LeastStep());
        case Motion::None:
            break;
    }
    return start_;
}

void NavigationTool::Show(const ViewCamera& camera) {
    host_.SetCamera(clearOf(camera, host_.ShownBox()));
}

void NavigationTool::Hold(const glm::ivec2& pixel) {
    held_ = host_.PlaceAt(pixel);
    host_.Say(held_
                  ? "The view turns around this point. Double-click empty space, or press Escape, "
                    "to turn around the place under the cursor again."
                  : "The view turns around the place under the cursor.");
}

void NavigationTool::MoveBy(Motion motion, const glm::ivec2& pixels) {
    if (motion_ != Motion::None) return;
    const glm::ivec2 middle = middleOf(host_.PictureSize());
    Begin(motion, middle);
    Show(MovedTo(middle + pixels));
    motion_ = Motion::None;
    moved_ = true;
}

void NavigationTool::Begin(Motion motion, const glm::ivec2& place) {
    motion_ = motion;
    dragged_ = false;
    zoomedTo_.reset();
    press_ = place;
    grabbed_ = motion == Motion::Turn && held_ ? *held_ : PivotAt(place);
    // Scales and parallel views hold for what one works at.
    start_ = retarget(host_.Camera(), depthOf(host_.Camera(), grabbed_));
    host_.RedrawShapes();
}

glm::dvec3 NavigationTool::PivotAt(const glm::ivec2& pixel) {
    return pivot_.Find(host_.Camera(), host_.PictureSize(), pixel, host_.PlaceAt(pixel),
                       host_.ShownBox());
}

double NavigationTool::LeastStep() const {
    return leastStepShare * host_.ShownBox().Diagonal();
}

}  // namespace vpc::viewer
