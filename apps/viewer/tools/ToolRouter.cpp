#include "viewer/tools/ToolRouter.h"

#include <utility>

namespace vpc::viewer {

void ToolRouter::Use(Tool* tool) {
    if (holder_ == tool_) Cancel();
    tool_ = tool;
}

void ToolRouter::Press(const MouseInput& input) {
    if (holder_ != nullptr) return;  // a second button while the first one is down
    press_ = last_ = input;
    if (tool_ != nullptr && tool_->OnPress(input))
        holder_ = tool_;
    else if (navigation_.OnPress(input))
        holder_ = &navigation_;
}

void ToolRouter::Move(const MouseInput& input) {
    last_ = input;
    if (holder_ == nullptr) {
        if (tool_ == nullptr || !tool_->OnMove(input)) navigation_.OnMove(input);
        return;
    }
    const bool isTaken = holder_->OnDrag(input);
    if (isTaken || holder_ == &navigation_) return;
    holder_ = navigation_.OnPress(press_) ? &navigation_ : nullptr;
    if (holder_ != nullptr) holder_->OnDrag(input);
}

void ToolRouter::Release(const MouseInput& input) {
    if (holder_ == nullptr) return;
    if (input.button != MouseButton::None && input.button != press_.button) return;
    // Events may have been dropped, so that the drag is known from its end only. The tool may be
    // gone after its release.
    if (input.place != last_.place) Move(input);
    if (Tool* holder = std::exchange(holder_, nullptr)) holder->OnRelease(input);
}

void ToolRouter::Cancel() {
    if (Tool* holder = std::exchange(holder_, nullptr)) holder->OnCancel();
}

void ToolRouter::Leave() {
    if (tool_ != nullptr && holder_ == nullptr) tool_->OnLeave();
}

bool ToolRouter::Key(ToolKey key) {
    return (tool_ != nullptr && tool_->OnKey(key)) || navigation_.OnKey(key);
}

void ToolRouter::AddShapes(Shapes& shapes) const {
    if (tool_ != nullptr) tool_->AddShapes(shapes);
    navigation_.AddShapes(shapes);
}

}  // namespace vpc::viewer
