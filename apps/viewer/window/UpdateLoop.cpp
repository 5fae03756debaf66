#include "viewer/window/UpdateLoop.h"

#include <algorithm>
#include <utility>

namespace vpc::viewer {

namespace {

constexpr int restMs = 150;
/// As many points as can follow the mouse.
constexpr unsigned long long previewBudget = 1'000'000;

constexpr const char* noMemory =
    "There is not enough memory to show the points of this view; lower the point budget.";

}  // namespace

UpdateLoop::UpdateLoop(Engine& engine, FrameLoop& frames, View view, Updated updated)
    : engine_(engine), frames_(frames), view_(std::move(view)), updated_(std::move(updated)) {
    rest_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { Ask(); });
}

UpdateLoop::~UpdateLoop() {
    if (drawing_.joinable()) drawing_.join();
}

void UpdateLoop::AskAtRest() {
    if (!isStopped_) rest_.StartOnce(restMs);
}

void UpdateLoop::Ask() {
    // The camera as it is goes with the request.
    rest_.Stop();
    if (rested_) rested_();
    isWanted_ = true;
    isPreviewWanted_ = false;
    Start();
}

void UpdateLoop::AskPreview() {
    isWanted_ = true;
    isPreviewWanted_ = true;
    Start();
}

void UpdateLoop::AskPicture(const draw::ImageSize& size, std::function<void(PointRenderer&)> draw,
                            std::function<void()> done) {
    picture_ = Picture{size, std::move(draw), std::move(done)};
    Start();
}

void UpdateLoop::Stop() {
    isStopped_ = true;
    rest_.Stop();
}

void UpdateLoop::Start() {
    if (isStopped_ || isRunning_ || !(isWanted_ || picture_)) return;
    ViewRequest request = view_();
    isForPicture_ = picture_.has_value();
    if (isForPicture_) {
        request.size = picture_->size;
        isWanted_ = true;  // the window's view, afterwards
    } else {
        isWanted_ = false;
        isPreview_ = std::exchange(isPreviewWanted_, false);
        if (isPreview_)
            request.drawing.pointBudget = std::min(request.drawing.pointBudget, previewBudget);
    }
    isRunning_ = true;
    engine_.Update(request, [this](const ViewResult& result) { OnResult(result); });
}

bool UpdateLoop::IsOutdated() const {
    return !isForPicture_ && !isPreview_ && (isWanted_ || rest_.IsRunning());
}

void UpdateLoop::OnResult(const ViewResult& result) {
    // The coarsest level of a large file may be too much for a preview. The points before are
    // better than none.
    const bool isEmptyPreview = !isForPicture_ && isPreview_ && result.shown == 0;
    if (isStopped_ || IsOutdated() || isEmptyPreview) {
        End();
        return;
    }
    PointRenderer& renderer = frames_.Lend();
    const std::span<PointVertex> memory = renderer.OpenPoints(result.shown);
    if (memory.empty()) {
        OnFetched(result, 0);
        return;
    }
    engine_.Fetch(memory, result.origin,
                  [this, result](std::size_t count) { OnFetched(result, count); });
}

void UpdateLoop::OnFetched(const ViewResult& result, std::size_t count) {
    PointRenderer& renderer = frames_.Lend();
    renderer.ClosePoints(count, result.origin, result.spacing);
    if (isForPicture_) {
        DrawPicture();
        return;
    }
    frames_.GiveBack();
    frames_.DrawAgain();
    updated_(result, count == 0 && result.shown > 0 ? noMemory : "");
    End();
}

void UpdateLoop::DrawPicture() {
    PointRenderer& renderer = frames_.Lend();
    renderer.Release();
    drawing_ = std::thread([this, &renderer] {
        picture_->draw(renderer);
        renderer.Release();
        mailbox_.CallAfter([this] { EndPicture(); });
    });
}

void UpdateLoop::EndPicture() {
    drawing_.join();
    const std::function<void()> done = std::move(picture_->done);
    picture_.reset();
    frames_.GiveBack();
    done();
    End();
}

void UpdateLoop::End() {
    isRunning_ = false;
    Start();
}

}  // namespace vpc::viewer
