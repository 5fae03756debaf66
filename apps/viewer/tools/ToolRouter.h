#pragma once

#include "viewer/tools/Tool.h"

namespace vpc::viewer {

/// Brings the mouse to the tool in use, and to navigation what that tool does not take.
///
/// A press that the tool takes may still become navigation: where OnDrag returns false, the press
/// is handed to navigation, from its own place, and so is all that follows until the release. So a
/// click is the tool's, and a drag turns the view.
class ToolRouter {
public:
    /// \param navigation stays with the caller and must outlive the router
    explicit ToolRouter(Tool& navigation) : navigation_(navigation) {}

    /// Ends a press that the last tool has taken, so that tool must still be there.
    /// \param tool null for navigation alone; stays with the caller
    void Use(Tool* tool);

    void Press(const MouseInput& input);
    /// The mouse moved, with or without a button.
    void Move(const MouseInput& input);
    void Release(const MouseInput& input);
    /// The window lost the mouse.
    void Cancel();
    /// The mouse has left the view.
    void Leave();
    bool Key(ToolKey key);
    void AddShapes(Shapes& shapes) const;
    /// Whether a button is down.
    bool IsPressed() const { return holder_ != nullptr; }

private:
    Tool& navigation_;
    Tool* tool_ = nullptr;
    Tool* holder_ = nullptr;  // who gets the drag
    MouseInput press_;
    MouseInput last_;
};

}  // namespace vpc::viewer
