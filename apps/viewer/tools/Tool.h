#pragma once

#include <functional>
#include <optional>
#include <string>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include "draw/ImageSize.h"
#include "viewer/camera/Box.h"
#include "viewer/camera/ViewCamera.h"
#include "viewer/document/Drawing.h"
#include "viewer/tools/Pick.h"
#include "viewer/tools/Shapes.h"

namespace vpc::viewer {

enum class MouseButton { None, Left, Middle, Right };

struct MouseInput {
    /// In pixels of the picture, from its top left.
    glm::ivec2 place{0, 0};
    MouseButton button = MouseButton::None;
    bool shift = false;
    bool control = false;
    bool alt = false;
    /// A press that is the second of a double click.
    bool isDouble = false;
};

/// Keys that tools know; the window translates its own.
enum class ToolKey { Escape, Enter, Delete, Backspace, Copy };

/// What a tool asks of the window that it works in. One thread: the window's.
class ToolHost {
public:
    virtual ~ToolHost() = default;

    virtual const ViewCamera& Camera() const = 0;
    /// Shows another view at once. A step that the user can go back over ends with KeepView.
    virtual void SetCamera(const ViewCamera& camera) = 0;
    virtual void KeepView() = 0;
    virtual draw::ImageSize PictureSize() const = 0;
    /// The place of the drawing that is seen at a pixel, or next to it; nothing over empty space.
    virtual std::optional<glm::dvec3> PlaceAt(const glm::ivec2& pixel) const = 0;
    /// The box around everything that is shown.
    virtual Box ShownBox() const = 0;
    /// Without what a drag previews.
    virtual const Drawing& GetDrawing() const = 0;
    /// Shows another state of the drawing, while a drag goes on; nothing to be undone yet.
    virtual void Preview(const Drawing& drawing) = 0;
    /// Makes a state of the drawing the current one, as a step that can be undone.
    /// \param label what was done, as in "Undo: move section"
    virtual void Change(const std::string& label, const Drawing& drawing) = 0;
    /// Asks the engine for the point at a pixel; `done` is called later, with nothing where none
    /// is.
    virtual void PickAt(const glm::ivec2& pixel,
                        std::function<void(const std::optional<Pick>&)> done) = 0;
    virtual void CopyText(const std::string& text) = 0;
    /// A sentence in the status bar; what the user can do next.
    virtual void Say(const std::string& sentence) = 0;
    /// What lies over the points has changed.
    virtual void RedrawShapes() = 0;
    /// The tool is done; the window goes back to plain navigation.
    virtual void EndTool() = 0;
};

/// What the mouse does in the view. Navigation (orbit, pan, zoom) stays live below every tool: what
/// a tool does not take goes there.
class Tool {
public:
    virtual ~Tool() = default;

    /// Each returns whether the tool took the input.
    virtual bool OnPress(const MouseInput&) { return false; }
    /// The mouse moved to `place` while the button of the last press that was taken is down.
    virtual bool OnDrag(const MouseInput&) { return false; }
    virtual bool OnRelease(const MouseInput&) { return false; }
    /// The press that was taken gets no release: the window lost the mouse, or another tool comes.
    /// What a drag previews is put back.
    virtual void OnCancel() {}
    /// The mouse moved without a button.
    virtual bool OnMove(const MouseInput&) { return false; }
    /// The mouse has left the view.
    virtual void OnLeave() {}
    virtual bool OnKey(ToolKey) { return false; }
    /// Adds what the tool shows over the points.
    virtual void AddShapes(Shapes&) const {}
};

}  // namespace vpc::viewer
