#include "viewer/window/ViewPicture.h"

#include <utility>

#include <wx/app.h>

namespace vpc::viewer {

ViewPicture::ViewPicture(ViewPanel& panel, std::function<Overlay()> overlay,
                         std::function<ViewStyle()> style)
    : panel_(panel), overlay_(std::move(overlay)), style_(std::move(style)) {
    wxTheApp->Bind(wxEVT_IDLE, &ViewPicture::OnIdle, this);
}

ViewPicture::~ViewPicture() {
    wxTheApp->Unbind(wxEVT_IDLE, &ViewPicture::OnIdle, this);
}

void ViewPicture::Show(draw::Image points, const ViewCamera& camera) {
    points_ = std::move(points);
    camera_ = camera;
    ShowNow();
}

void ViewPicture::Redraw() {
    isWanted_ = points_.has_value();
    wxWakeUpIdle();
}

void ViewPicture::Clear() {
    points_.reset();
    isWanted_ = false;
}

void ViewPicture::OnIdle(wxIdleEvent& event) {
    event.Skip();
    if (isWanted_) ShowNow();
}

void ViewPicture::ShowNow() {
    isWanted_ = false;
    draw::Image picture = *points_;
    overlay_().LayOver(picture, camera_, style_(), picture.Size());
    panel_.Show(picture);
}

}  // namespace vpc::viewer
