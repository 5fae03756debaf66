#include "viewer/tools/WalkTool.h"

#include <algorithm>
#include <cmath>

#include "viewer/document/Labels.h"

namespace vpc::viewer {

namespace {

/// A pace, as a share of what is shown.
constexpr double paceShare = 0.01;
constexpr double leastPace = 1e-9;
constexpr double longestPace = 1e9;

}  // namespace

WalkTool::WalkTool(ToolHost& host) : host_(host) {
    const double extent = host.ShownBox().Diagonal();
    if (extent > 0.0) pace_ = std::clamp(paceShare * extent, leastPace, longestPace);
    if (!host.Camera().perspective) {
        host.SetCamera(withPerspective(host.Camera(), true));
        host.KeepView();
    }
    host.Say(
        "W, A, S, D and the arrow keys walk, Page Up and Page Down rise and sink, a drag looks "
        "around. "
        "Escape ends.");
}

bool WalkTool::OnPress(const MouseInput& input) {
    if (input.button != MouseButton::Left || input.shift) return false;
    Rest();
    looking_ = true;
    press_ = last_ = input.place;
    start_ = host_.Camera();
    return true;
}

bool WalkTool::OnDrag(const MouseInput& input) {
    last_ = input.place;
    moved_ = true;
    host_.SetCamera(LookedTo(input.place));
    return true;
}

bool WalkTool::OnRelease(const MouseInput& input) {
    if (input.place != last_) OnDrag(input);
    OnCancel();
    return true;
}

void WalkTool::OnCancel() {
    looking_ = false;
    Rest();
}

bool WalkTool::OnKey(ToolKey key) {
    if (key != ToolKey::Escape) return false;
    Rest();
    host_.EndTool();
    return true;
}

void WalkTool::Walk(double ahead, double right, double up) {
    Step({ahead * pace_, right * pace_, up * pace_, 0.0, 0.0});
}

void WalkTool::Look(double yaw, double pitch) {
    Step({0.0, 0.0, 0.0, yaw, pitch});
}

void WalkTool::ChangePace(double factor) {
    const double pace = pace_ * factor;
    if (!(pace >= leastPace && pace <= longestPace)) return;
    pace_ = pace;
    host_.Say("A pace is " + lengthText(pace_) + " long now.");
}

void WalkTool::Rest() {
    if (!moved_ || looking_) return;
    moved_ = false;
    host_.KeepView();
}

void WalkTool::Step(const WalkStep& step) {
    host_.SetCamera(walk(host_.Camera(), step));
    moved_ = true;
    // A drag that is under way goes on from here.
    start_ = host_.Camera();
    press_ = last_;
}

ViewCamera WalkTool::LookedTo(const glm::ivec2& place) const {
    // What is in the picture's middle follows the cursor.
    const double angle = start_.fieldHeight / start_.Distance() / host_.PictureSize().height;
    const glm::dvec2 way = glm::dvec2(place - press_) * angle;
    return walk(start_, {0.0, 0.0, 0.0, way.x, way.y});
}

}  // namespace vpc::viewer
