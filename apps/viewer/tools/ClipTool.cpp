#include "viewer/tools/ClipTool.h"

#include "viewer/camera/CameraMotion.h"
#include "viewer/camera/StandardView.h"
#include "viewer/document/Refusal.h"
#include "viewer/tools/Click.h"

namespace vpc::viewer {

namespace {

constexpr draw::Colour clipColour{255, 120, 90};

}  // namespace

ClipTool::ClipTool(ToolHost& host, Shape shape, bool keepsInside)
    : host_(host), shape_(shape), keepsInside_(keepsInside) {
    if (IsParallel()) SayNext();
}

bool ClipTool::OnPress(const MouseInput& input) {
    if (input.button != MouseButton::Left || input.shift) return false;
    press_ = input.place;
    closes_ = input.isDouble;
    if (shape_ == Shape::Box) {
        Clear();
        if (IsParallel())
            if (const auto corner = CornerAt(input.place)) corners_ = {*corner};
    }
    return true;
}

bool ClipTool::OnDrag(const MouseInput& input) {
    if (shape_ == Shape::Polygon) return isClick(press_, input.place);
    if (corners_.empty()) return true;
    cursor_ = CornerAt(input.place);
    host_.RedrawShapes();
    return true;
}

bool ClipTool::OnRelease(const MouseInput& input) {
    if (shape_ == Shape::Polygon) {
        if (closes_) {
            Close();  // and this tool may be gone
            return true;
        }
        if (!corners_.empty() || IsParallel())
            if (const auto corner = CornerAt(press_)) {
                corners_.push_back(*corner);
                SayNext();
            }
        host_.RedrawShapes();
        return true;
    }
    const auto end = CornerAt(input.place);
    if (corners_.empty() || !end || isClick(press_, input.place)) {
        Clear();
        SayNext();
        return true;
    }
    corners_ = rectangleBetween(corners_.front(), *end);
    Close();
    return true;
}

void ClipTool::OnCancel() {
    if (shape_ == Shape::Box) Clear();
}

bool ClipTool::OnMove(const MouseInput& input) {
    if (shape_ != Shape::Polygon || corners_.empty()) return false;
    cursor_ = CornerAt(input.place);
    host_.RedrawShapes();
    return true;
}

bool ClipTool::OnKey(ToolKey key) {
    switch (key) {
        case ToolKey::Escape:
            if (corners_.empty()) {
                host_.EndTool();  // and this tool may be gone
            } else {
                Clear();
                SayNext();
            }
            return true;
        case ToolKey::Enter:
            if (shape_ != Shape::Polygon) return false;
            Close();
            return true;
        case ToolKey::Backspace:
            if (shape_ != Shape::Polygon || corners_.empty()) return false;
            corners_.pop_back();
            SayNext();
            host_.RedrawShapes();
            return true;
        case ToolKey::Delete:
        case ToolKey::Copy:
            break;
    }
    return false;
}

void ClipTool::AddShapes(Shapes& shapes) const {
    const std::vector<glm::dvec3> corners = Corners();
    for (std::size_t i = 0; i < corners.size(); ++i)
        if (corners.size() > 1)
            shapes.lines.push_back({corners[i], corners[(i + 1) % corners.size()], clipColour});
    if (shape_ == Shape::Polygon)
        for (const glm::dvec2& corner : corners_)
            shapes.marks.push_back({plane_.Place(corner), clipColour});
}

void ClipTool::SetKeepsInside(bool keepsInside) {
    keepsInside_ = keepsInside;
    SayNext();
}

std::vector<glm::dvec3> ClipTool::Corners() const {
    if (corners_.empty()) return {};
    std::vector<glm::dvec2> corners = corners_;
    if (cursor_ && shape_ == Shape::Box) corners = rectangleBetween(corners_.front(), *cursor_);
    if (cursor_ && shape_ == Shape::Polygon) corners.push_back(*cursor_);
    std::vector<glm::dvec3> places;
    places.reserve(corners.size());
    for (const glm::dvec2& corner : corners) places.push_back(plane_.Place(corner));
    return places;
}

bool ClipTool::IsParallel() {
    if (!host_.Camera().perspective) return true;
    host_.SetCamera(clearOf(withPerspective(host_.Camera(), false), host_.ShownBox()));
    host_.KeepView();
    host_.Say(
        "The view is parallel now, because a clip goes straight through the drawing along the "
        "direction of view. " +
        std::string(shape_ == Shape::Box ? "Drag a box." : "Click on the corners."));
    return false;
}

std::optional<glm::dvec2> ClipTool::CornerAt(const glm::ivec2& pixel) {
    if (corners_.empty()) plane_ = ClipPlane::Of(host_.Camera());
    const auto corner =
        plane_.Meet(rayThrough(host_.Camera(), host_.PictureSize(), middleOf(pixel)));
    if (!corner) host_.Say("The clip is seen from the side here. Turn the view back.");
    return corner;
}

void ClipTool::Close() {
    try {
        const Drawing drawing =
            withClip(host_.GetDrawing(), makeClip(plane_, corners_, keepsInside_));
        Clear();
        host_.Change(shape_ == Shape::Box ? "clip box" : "clip polygon", drawing);
    } catch (const Refusal& refusal) {
        host_.Say(refusal.what());
        if (shape_ == Shape::Box) Clear();
        return;
    }
    host_.EndTool();
}

void ClipTool::Clear() {
    corners_.clear();
    cursor_.reset();
    host_.RedrawShapes();
}

void ClipTool::SayNext() {
    const std::string kept =
        keepsInside_ ? "What is inside is kept." : "What is inside is removed.";
    if (shape_ == Shape::Box)
        host_.Say("Drag a box. " + kept + " Escape ends.");
    else if (corners_.empty())
        host_.Say("Click on the corners. " + kept + " A drag turns the view, Escape ends.");
    else if (corners_.size() < 3)
        host_.Say("Click on the next corner. Backspace takes the last one back. " + kept);
    else
        host_.Say("Click on the next corner; Enter or a double click closes the clip. " + kept);
}

}  // namespace vpc::viewer
