#pragma once

#include <functional>
#include <string>

#include <wx/bitmap.h>
#include <wx/window.h>

#include "draw/Image.h"
#include "viewer/tools/Tool.h"

namespace vpc::viewer {

/// What the user does in the view. Places are in pixels of the picture.
class ViewInput {
public:
    virtual ~ViewInput() = default;

    virtual void OnPress(const MouseInput& input) = 0;
    virtual void OnRelease(const MouseInput& input) = 0;
    /// With or without a button.
    virtual void OnMove(const MouseInput& input) = 0;
    /// A press will get no release.
    virtual void OnCancel() = 0;
    /// \param steps notches of a wheel, to the back positive; a touchpad gives parts of them
    virtual void OnWheel(const MouseInput& input, double steps, bool isHorizontal) = 0;
    /// Two fingers on a touchpad. \param factor above 1 where they part
    virtual void OnPinch(const MouseInput& input, double factor) = 0;
    /// \return whether the key means something here
    virtual bool OnKey(const wxKeyEvent& event) = 0;
    /// The mouse has left the view.
    virtual void OnLeave() = 0;
    virtual void OnResized(const draw::ImageSize& size) = 0;
};

/// The window's middle: shows a picture, and tells what the user does on it.
class ViewPanel : public wxWindow {
public:
    ViewPanel(wxWindow* parent, const draw::Colour& background);

    /// `input` must outlive the panel's events; null for none.
    void SetInput(ViewInput* input) { input_ = input; }
    draw::ImageSize PictureSize() const;
    void Show(const draw::Image& picture);
    /// Shows a text in place of a picture: what can be done here.
    void ShowText(const wxString& heading, const wxString& text, const draw::Colour& background);
    using wxWindow::Show;

    bool AcceptsFocus() const override { return true; }

private:
    void OnPaint(wxPaintEvent& event);
    void OnSize(wxSizeEvent& event);
    void OnPressed(wxMouseEvent& event);
    void OnReleased(wxMouseEvent& event);
    void OnMoved(wxMouseEvent& event);
    void OnWheelTurned(wxMouseEvent& event);
    void OnZoomGesture(wxZoomGestureEvent& event);
    void OnCaptureLost(wxMouseCaptureLostEvent& event);
    /// Gives up a press that got no release.
    void Cancel();
    MouseInput InputOf(const wxMouseEvent& event) const;
    glm::ivec2 PixelOf(const wxPoint& place) const;
    void PaintText(wxDC& dc) const;

    ViewInput* input_ = nullptr;
    wxBitmap picture_;
    wxString heading_;
    wxString text_;
    draw::Colour background_;
    /// The button that is held since a press.
    MouseButton held_ = MouseButton::None;
    double lastGesture_ = 1.0;
};

}  // namespace vpc::viewer
