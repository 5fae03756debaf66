#include "viewer/window/ViewPanel.h"

#include <algorithm>
#include <cmath>

#include <wx/dcclient.h>
#include <wx/image.h>
#include <wx/settings.h>

namespace vpc::viewer {

namespace {

MouseButton buttonOf(const wxMouseEvent& event) {
    switch (event.GetButton()) {
        case wxMOUSE_BTN_LEFT:
            return MouseButton::Left;
        case wxMOUSE_BTN_MIDDLE:
            return MouseButton::Middle;
        case wxMOUSE_BTN_RIGHT:
            return MouseButton::Right;
        default:
            return MouseButton::None;
    }
}

wxColour wxColourOf(const draw::Colour& colour) {
    return {colour.red, colour.green, colour.blue};
}

}  // namespace

ViewPanel::ViewPanel(wxWindow* parent, const draw::Colour& background) : background_(background) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxWANTS_CHARS | wxBORDER_NONE,
           "view");
    EnableTouchEvents(wxTOUCH_ZOOM_GESTURE);
    Bind(wxEVT_PAINT, &ViewPanel::OnPaint, this);
    Bind(wxEVT_SIZE, &ViewPanel::OnSize, this);
    // The second press of a double click comes instead of a press, not after it.
    for (const auto& type : {wxEVT_LEFT_DOWN, wxEVT_MIDDLE_DOWN, wxEVT_RIGHT_DOWN,
                             wxEVT_LEFT_DCLICK, wxEVT_MIDDLE_DCLICK, wxEVT_RIGHT_DCLICK})
        Bind(type, &ViewPanel::OnPressed, this);
    for (const auto& type : {wxEVT_LEFT_UP, wxEVT_MIDDLE_UP, wxEVT_RIGHT_UP})
        Bind(type, &ViewPanel::OnReleased, this);
    Bind(wxEVT_MOTION, &ViewPanel::OnMoved, this);
    Bind(wxEVT_MOUSEWHEEL, &ViewPanel::OnWheelTurned, this);
    Bind(wxEVT_GESTURE_ZOOM, &ViewPanel::OnZoomGesture, this);
    Bind(wxEVT_MOUSE_CAPTURE_LOST, &ViewPanel::OnCaptureLost, this);
    Bind(wxEVT_LEAVE_WINDOW, [this](wxMouseEvent& event) {
        if (input_ != nullptr && held_ == MouseButton::None) input_->OnLeave();
        event.Skip();
    });
    Bind(wxEVT_KEY_DOWN, [this](wxKeyEvent& event) {
        if (input_ == nullptr || !input_->OnKey(event)) event.Skip();
    });
}

draw::ImageSize ViewPanel::PictureSize() const {
    const wxSize size = GetClientSize() * GetContentScaleFactor();
    return {std::max(size.x, 1), std::max(size.y, 1)};
}

void ViewPanel::Show(const draw::Image& picture) {
    const draw::ImageSize& size = picture.Size();
    // wxImage asks for writable memory, although it only reads it here.
    auto* bytes =
        const_cast<unsigned char*>(reinterpret_cast<const unsigned char*>(picture.Data()));
    picture_ = wxBitmap(wxImage(size.width, size.height, bytes, true), wxBITMAP_SCREEN_DEPTH,
                        GetContentScaleFactor());
    heading_.clear();
    text_.clear();
    Refresh(false);
}

void ViewPanel::ShowText(const wxString& heading, const wxString& text,
                         const draw::Colour& background) {
    picture_ = wxBitmap();
    heading_ = heading;
    text_ = text;
    background_ = background;
    Refresh(false);
}

void ViewPanel::OnPaint(wxPaintEvent&) {
    wxPaintDC dc(this);
    const wxSize size = GetClientSize();
    if (!picture_.IsOk() || picture_.GetLogicalWidth() < size.x ||
        picture_.GetLogicalHeight() < size.y) {
        dc.SetBackground(wxBrush(wxColourOf(background_)));
        dc.Clear();
    }
    if (picture_.IsOk())
        dc.DrawBitmap(picture_, 0, 0);
    else
        PaintText(dc);
}

void ViewPanel::PaintText(wxDC& dc) const {
    const bool isDark = background_.Luminance() < 128.0F;
    const wxSize size = GetClientSize();
    const auto paint = [&](const wxString& text, float factor, unsigned char brightness, int top) {
        const auto grey = static_cast<unsigned char>(isDark ? brightness : 255 - brightness);
        dc.SetFont(GetFont().Scaled(factor));
        dc.SetTextForeground(wxColour(grey, grey, grey));
        const wxSize extent = dc.GetMultiLineTextExtent(text);
        dc.DrawLabel(text, wxRect((size.x - extent.x) / 2, top, extent.x, extent.y),
                     wxALIGN_CENTRE_HORIZONTAL | wxALIGN_TOP);
        return top + extent.y;
    };
    const int middle = size.y / 2 - 4 * GetCharHeight();
    const int below = paint(heading_, 1.9F, 225, middle);
    paint(text_, 1.1F, 160, below + GetCharHeight());
}

void ViewPanel::OnSize(wxSizeEvent& event) {
    if (input_ != nullptr) input_->OnResized(PictureSize());
    Refresh(false);
    event.Skip();
}

void ViewPanel::OnPressed(wxMouseEvent& event) {
    SetFocus();
    if (input_ == nullptr) return;
    MouseInput input = InputOf(event);
    input.isDouble = event.ButtonDClick();
    if (held_ != MouseButton::None) return;  // a second button during a drag
    if (!HasCapture()) CaptureMouse();
    held_ = input.button;
    input_->OnPress(input);
}

void ViewPanel::OnReleased(wxMouseEvent& event) {
    const MouseInput input = InputOf(event);
    const bool isHeld = held_ == input.button;
    if (isHeld) held_ = MouseButton::None;
    if (held_ == MouseButton::None && HasCapture()) ReleaseMouse();
    if (input_ != nullptr && isHeld) input_->OnRelease(input);
}

void ViewPanel::OnMoved(wxMouseEvent& event) {
    if (input_ == nullptr) return;
    // The release went elsewhere: to a dialog that came up.
    if (held_ != MouseButton::None && !event.ButtonIsDown(wxMOUSE_BTN_ANY)) Cancel();
    MouseInput input = InputOf(event);
    input.button = held_;
    input_->OnMove(input);
}

void ViewPanel::OnWheelTurned(wxMouseEvent& event) {
    if (input_ == nullptr || event.GetWheelDelta() == 0) return;
    const double steps = static_cast<double>(event.GetWheelRotation()) / event.GetWheelDelta();
    input_->OnWheel(InputOf(event), steps, event.GetWheelAxis() == wxMOUSE_WHEEL_HORIZONTAL);
}

void ViewPanel::OnZoomGesture(wxZoomGestureEvent& event) {
    if (event.IsGestureStart()) lastGesture_ = 1.0;
    const double factor = event.GetZoomFactor();
    if (input_ == nullptr || !(factor > 0.0)) return;
    MouseInput input;
    input.place = PixelOf(event.GetPosition());
    input_->OnPinch(input, factor / lastGesture_);
    lastGesture_ = factor;
}

void ViewPanel::OnCaptureLost(wxMouseCaptureLostEvent&) {
    Cancel();
}

void ViewPanel::Cancel() {
    held_ = MouseButton::None;
    if (HasCapture()) ReleaseMouse();
    if (input_ != nullptr) input_->OnCancel();
}

MouseInput ViewPanel::InputOf(const wxMouseEvent& event) const {
    MouseInput input;
    input.place = PixelOf(event.GetPosition());
    input.button = buttonOf(event);
    input.shift = event.ShiftDown();
    input.control = event.ControlDown();
    input.alt = event.AltDown();
    return input;
}

glm::ivec2 ViewPanel::PixelOf(const wxPoint& place) const {
    const double scale = GetContentScaleFactor();
    return {static_cast<int>(std::lround(place.x * scale)),
            static_cast<int>(std::lround(place.y * scale))};
}

}  // namespace vpc::viewer
