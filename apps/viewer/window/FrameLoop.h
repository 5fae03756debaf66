#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <wx/event.h>

#include "draw/Image.h"
#include "viewer/camera/FrameBudget.h"
#include "viewer/camera/ViewCamera.h"
#include "viewer/document/ViewStyle.h"
#include "viewer/drawing/PointRenderer.h"

namespace vpc::viewer {

/// Has the points drawn while the window has nothing else to do, in slices so short that it always
/// answers. A picture first shows as many points as fit into a frame's time, then all.
class FrameLoop {
public:
    /// A picture of the points, and the camera that it was drawn with.
    using Show = std::function<void(draw::Image picture, const ViewCamera& camera)>;

    FrameLoop(std::unique_ptr<PointRenderer> renderer, Show show);
    ~FrameLoop();
    FrameLoop(const FrameLoop&) = delete;
    FrameLoop& operator=(const FrameLoop&) = delete;

    /// Has another picture drawn, soon; what is missing of the one before is not drawn any more.
    void Draw(const ViewCamera& camera, const draw::ImageSize& size, const ViewStyle& style);
    /// The same picture again, of other points. It is shown when it is whole, or when that takes
    /// long, since a picture of these points is on the screen already.
    void DrawAgain();

    /// The renderer, for somebody who changes its points or draws with it in another thread. Until
    /// it is given back the last picture stays. Only one at a time has it.
    PointRenderer& Lend();
    void GiveBack();
    /// The same by somebody who has drawn a picture of another view: this one is drawn again, and
    /// before that nothing is looked up in the other one.
    void GiveBackAfterPicture();
    bool IsLent() const { return isLent_; }

    /// Nothing while the renderer is lent, or has a picture of another view.
    std::optional<glm::dvec3> PlaceAt(const glm::ivec2& pixel) const;
    /// For somebody who asks what pictures it can draw, also while it is lent.
    const PointRenderer& Renderer() const { return *renderer_; }
    /// Called when the graphics card has given up and the processor draws in its place, from then
    /// on. It has no points yet.
    void OnReplaced(std::function<void()> replaced) { replaced_ = std::move(replaced); }
    /// Called when there is not enough memory for a picture. The last one stays.
    void OnLackOfMemory(std::function<void()> lacking) { lacking_ = std::move(lacking); }
    std::string RendererName() const { return rendererName_; }
    /// From the beginning of a picture until it could be shown for the first time.
    double FrameMilliseconds() const { return frameMs_; }
    /// Whether all is drawn.
    bool IsIdle() const {
        return !isLent_ && !isWanted_ && nextSlice_ >= slices_ && !renderer_->IsLost();
    }

private:
    using Clock = std::chrono::steady_clock;

    /// Drivers translate their programs when they are first used, which takes longer than the
    /// window may wait. There is none yet.
    void WarmUp();
    void OnIdle(wxIdleEvent& event);
    void Begin();
    /// What has been begun is not drawn on, nor is anything looked up in it.
    void Stop();
    /// The last picture stays until there are points.
    void Replace();
    void DrawSlice();
    void ShowPicture();

    std::unique_ptr<PointRenderer> renderer_;
    Show show_;
    std::string rendererName_;
    std::function<void()> replaced_;
    std::function<void()> lacking_;
    FrameBudget budget_;
    ViewCamera camera_;
    draw::ImageSize size_;
    ViewStyle style_;
    bool isLent_ = false;
    /// The renderer's last picture is of another view, or none at all.
    bool isForeign_ = false;
    /// A picture is to be begun.
    bool isWanted_ = false;
    /// The picture on the screen is of the same view.
    bool isRepeated_ = false;
    std::size_t slices_ = 0;
    std::size_t nextSlice_ = 0;
    Clock::time_point begun_;
    Clock::time_point shown_;
    /// Whether the picture has been shown since it was begun.
    bool isShown_ = false;
    double frameMs_ = 0.0;
};

}  // namespace vpc::viewer
