#pragma once

#include <memory>
#include <optional>
#include <string>

#include <glm/vec2.hpp>

#include "draw/Image.h"

struct _XDisplay;

namespace vpc::test {

/// The screen of an X server as somebody sits in front of it: mouse, keyboard, and what is shown.
/// What is sent arrives in this order. There is no window manager, so the keyboard goes to the
/// window on top when keys are sent. Throws std::runtime_error for what the server does not know.
class XScreen {
public:
    explicit XScreen(const std::string& display);

    void Move(const glm::ivec2& place);
    void Press(int button);
    void Release(int button);
    /// Presses keys together, by their names in X: "Control_L+Shift_L+F12".
    void Key(const std::string& keys);
    /// ASCII only.
    void Type(const std::string& text);
    /// The window that lies on top; nothing where none is shown.
    std::optional<unsigned long> TopWindow() const;
    /// Asks the window on top to close, as the button in its frame does.
    void CloseTop();
    draw::Image Picture(const glm::ivec2& topLeft, const draw::ImageSize& size) const;

private:
    void FocusTop();
    unsigned CodeOf(unsigned long symbol) const;

    struct CloseDisplay {
        void operator()(_XDisplay* display) const;
    };
    std::unique_ptr<_XDisplay, CloseDisplay> display_;
};

}  // namespace vpc::test
