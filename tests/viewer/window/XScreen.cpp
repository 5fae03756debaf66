#include "viewer/window/XScreen.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace vpc::test {

namespace {

struct FreeX {
    void operator()(Window* windows) const { XFree(windows); }
    void operator()(XImage* image) const { XDestroyImage(image); }
};

}  // namespace

void XScreen::CloseDisplay::operator()(_XDisplay* display) const {
    XCloseDisplay(display);
}

XScreen::XScreen(const std::string& display) : display_(XOpenDisplay(display.c_str())) {
    if (!display_) throw std::runtime_error("no X server at " + display);
    // A window may go between being found and being used; what follows finds the next one.
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
}

void XScreen::Move(const glm::ivec2& place) {
    XTestFakeMotionEvent(display_.get(), 0, place.x, place.y, CurrentTime);
    XFlush(display_.get());
}

void XScreen::Press(int button) {
    XTestFakeButtonEvent(display_.get(), static_cast<unsigned>(button), True, CurrentTime);
    XFlush(display_.get());
}

void XScreen::Release(int button) {
    XTestFakeButtonEvent(display_.get(), static_cast<unsigned>(button), False, CurrentTime);
    XFlush(display_.get());
}

unsigned XScreen::CodeOf(unsigned long symbol) const {
    const KeyCode code = XKeysymToKeycode(display_.get(), symbol);
    if (code == 0) throw std::runtime_error("no key " + std::to_string(symbol));
    return code;
}

void XScreen::Key(const std::string& keys) {
    FocusTop();
    std::vector<unsigned> codes;
    std::istringstream names(keys);
    for (std::string name; std::getline(names, name, '+');)
        codes.push_back(CodeOf(XStringToKeysym(name.c_str())));
    for (const unsigned code : codes) XTestFakeKeyEvent(display_.get(), code, True, CurrentTime);
    std::reverse(codes.begin(), codes.end());
    for (const unsigned code : codes) XTestFakeKeyEvent(display_.get(), code, False, CurrentTime);
    XFlush(display_.get());
}

void XScreen::Type(const std::string& text) {
    for (const char c : text) {
        // The symbol of a character has its number.
        const KeySym symbol = static_cast<unsigned char>(c);
        const auto plain =
            XkbKeycodeToKeysym(display_.get(), static_cast<KeyCode>(CodeOf(symbol)), 0, 0);
        Key((plain == symbol ? "" : "Shift_L+") + std::string(XKeysymToString(symbol)));
    }
}

std::optional<unsigned long> XScreen::TopWindow() const {
    Window root = 0, parent = 0, *list = nullptr;
    unsigned count = 0;
    XQueryTree(display_.get(), DefaultRootWindow(display_.get()), &root, &parent, &list, &count);
    const std::unique_ptr<Window, FreeX> owner(list);
    for (; count > 0; --count) {
        XWindowAttributes about{};
        XGetWindowAttributes(display_.get(), list[count - 1], &about);
        // Menus and hints go past every window manager.
        if (about.map_state == IsViewable && about.override_redirect == False)
            return list[count - 1];
    }
    return std::nullopt;
}

void XScreen::FocusTop() {
    const auto top = TopWindow();
    if (!top) throw std::runtime_error("no window is shown");
    Window focused = 0;
    int revert = 0;
    XGetInputFocus(display_.get(), &focused, &revert);
    if (focused != *top) XSetInputFocus(display_.get(), *top, RevertToPointerRoot, CurrentTime);
}

void XScreen::CloseTop() {
    const auto top = TopWindow();
    if (!top) throw std::runtime_error("no window is shown");
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = *top;
    event.xclient.message_type = XInternAtom(display_.get(), "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] =
        static_cast<long>(XInternAtom(display_.get(), "WM_DELETE_WINDOW", False));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(display_.get(), *top, False, NoEventMask, &event);
    XFlush(display_.get());
}

draw::Image XScreen::Picture(const glm::ivec2& topLeft, const draw::ImageSize& size) const {
    const std::unique_ptr<XImage, FreeX> shown(XGetImage(
        display_.get(), DefaultRootWindow(display_.get()), topLeft.x, topLeft.y,
        static_cast<unsigned>(size.width), static_cast<unsigned>(size.height), AllPlanes, ZPixmap));
    if (!shown) throw std::runtime_error("no picture of the screen");
    draw::Image picture(size, {});
    for (int row = 0; row < size.height; ++row)
        for (int column = 0; column < size.width; ++column) {
            const unsigned long pixel = XGetPixel(shown.get(), column, row);
            const auto channel = [pixel](int shift) {
                return static_cast<std::uint8_t>(pixel >> shift & 255U);
            };
            picture[size.Pixel(column, row)] = {channel(16), channel(8), channel(0)};
        }
    return picture;
}

}  // namespace vpc::test
