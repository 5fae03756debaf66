#pragma once

#include <functional>
#include <optional>

#include "draw/Image.h"
#include "viewer/drawing/Overlay.h"
#include "viewer/window/ViewPanel.h"

namespace vpc::viewer {

/// Lays shapes, axes, scale bar and legend over the last picture of the points, and shows it.
class ViewPicture {
public:
    /// \param overlay tells what lies over the points now
    ViewPicture(ViewPanel& panel, std::function<Overlay()> overlay,
                std::function<ViewStyle()> style);
    ~ViewPicture();
    ViewPicture(const ViewPicture&) = delete;
    ViewPicture& operator=(const ViewPicture&) = delete;

    /// A picture of the points, and the camera that it was drawn with.
    void Show(draw::Image points, const ViewCamera& camera);
    /// What lies over the points has changed; shown as soon as the window has nothing else to do.
    void Redraw();
    /// Nothing is shown any more.
    void Clear();
    bool IsIdle() const { return !isWanted_; }

private:
    void OnIdle(wxIdleEvent& event);
    void ShowNow();

    ViewPanel& panel_;
    std::function<Overlay()> overlay_;
    std::function<ViewStyle()> style_;
    std::optional<draw::Image> points_;
    ViewCamera camera_;
    bool isWanted_ = false;
};

}  // namespace vpc::viewer
