#include "viewer/window/FrameLoop.h"

#include <new>
#include <utility>

#include <wx/app.h>

#include "viewer/drawing/CpuRenderer.h"

namespace vpc::viewer {

namespace {

/// For the points of a frame, so that with all else there are some twenty of them a second.
constexpr double sliceMs = 25.0;
/// Between two pictures of a view that is not whole yet.
constexpr std::chrono::milliseconds refreshTime{150};

double millisecondsSince(std::chrono::steady_clock::time_point time) {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - time)
        .count();
}

}  // namespace

FrameLoop::FrameLoop(std::unique_ptr<PointRenderer> renderer, Show show)
    : renderer_(std::move(renderer)), show_(std::move(show)), rendererName_(renderer_->Name()) {
    WarmUp();
    wxTheApp->Bind(wxEVT_IDLE, &FrameLoop::OnIdle, this);
}

FrameLoop::~FrameLoop() {
    wxTheApp->Unbind(wxEVT_IDLE, &FrameLoop::OnIdle, this);
}

void FrameLoop::Draw(const ViewCamera& camera, const draw::ImageSize& size,
                     const ViewStyle& style) {
    camera_ = camera;
    size_ = size;
    style_ = style;
    isWanted_ = true;
    isRepeated_ = false;
    wxWakeUpIdle();
}

void FrameLoop::DrawAgain() {
    // A view that has not been shown yet is not repeated.
    isRepeated_ = !isWanted_;
    isWanted_ = true;
    wxWakeUpIdle();
}

PointRenderer& FrameLoop::Lend() {
    isLent_ = true;
    return *renderer_;
}

void FrameLoop::GiveBack() {
    isLent_ = false;
    wxWakeUpIdle();
}

void FrameLoop::GiveBackAfterPicture() {
    isForeign_ = true;
    DrawAgain();
    GiveBack();
}

std::optional<glm::dvec3> FrameLoop::PlaceAt(const glm::ivec2& pixel) const {
    if (isLent_ || isForeign_) return {};
    return renderer_->PlaceAt(pixel);
}

void FrameLoop::OnIdle(wxIdleEvent& event) {
    event.Skip();
    if (isLent_) return;
    if (renderer_->IsLost()) Replace();
    try {
        if (isWanted_)
            Begin();
        else if (nextSlice_ < slices_)
            DrawSlice();
    } catch (const std::bad_alloc&) {
        Stop();
        if (lacking_) lacking_();
    }
    if (nextSlice_ < slices_) event.RequestMore();
}

void FrameLoop::Begin() {
    isWanted_ = false;
    begun_ = Clock::now();
    try {
        renderer_->Begin(camera_, size_, style_);
    } catch (const std::bad_alloc&) {
        // Where a card lacks memory, the computer may have some.
        if (dynamic_cast<const CpuRenderer*>(renderer_.get()) != nullptr) throw;
        Replace();
        return;
    }
    slices_ = budget_.Step(renderer_->PointCount(), sliceMs);
    nextSlice_ = 0;
    shown_ = begun_;
    isShown_ = false;
    DrawSlice();
    if (!isShown_ && !isRepeated_) ShowPicture();
}

void FrameLoop::Stop() {
    isWanted_ = false;
    slices_ = nextSlice_ = 0;
    isForeign_ = true;
}

void FrameLoop::Replace() {
    Stop();
    renderer_ = std::make_unique<CpuRenderer>();
    rendererName_ = renderer_->Name();
    if (replaced_) replaced_();
}

void FrameLoop::DrawSlice() {
    const std::size_t points = (renderer_->PointCount() + slices_ - 1) / slices_;
    const Clock::time_point start = Clock::now();
    renderer_->Draw(nextSlice_, slices_);
    budget_.Measured(points, millisecondsSince(start));
    ++nextSlice_;
    if (nextSlice_ == slices_ || Clock::now() - shown_ > refreshTime) ShowPicture();
}

void FrameLoop::ShowPicture() {
    draw::Image picture = renderer_->Picture();
    if (renderer_->IsLost()) return wxWakeUpIdle();
    isForeign_ = false;
    show_(std::move(picture), camera_);
    shown_ = Clock::now();
    const bool isFirst = !std::exchange(isShown_, true);
    if (isFirst && !isRepeated_) frameMs_ = millisecondsSince(begun_);
}

void FrameLoop::WarmUp() {
    const std::span<PointVertex> memory = renderer_->OpenPoints(1);
    if (memory.empty()) return;
    memory[0] = {};
    renderer_->ClosePoints(1, glm::dvec3(0.0), 1.0);
    renderer_->Begin(ViewCamera(), {64, 64}, ViewStyle());
    renderer_->Draw(0, 1);
    renderer_->Picture();
    renderer_->OpenPoints(0);
    renderer_->ClosePoints(0, glm::dvec3(0.0), 1.0);
}

}  // namespace vpc::viewer
