#include "viewer/window/UpdateLoop.h"

#include <algorithm>
#include <utility>

namespace vpc::viewer {

namespace {

constexpr int restMs = 150;
/// As many points as can follow the mouse.
constexpr unsigned long long previewBudget = 1'000'000;

constexpr const char* noEngine = "the program does not work without its plug-in";
constexpr const char* noMemoryForPicture = "there is not enough memory for its points";
constexpr const char* cardFailed =
    "The graphics card has given up, so the processor draws the points now.";
constexpr const char* noMemory =
    "There is not enough memory to show the points of this view; lower the point budget.";

}  // namespace

UpdateLoop::UpdateLoop(Engine& engine, FrameLoop& frames, View view, Updated updated)
    : engine_(engine), frames_(frames), view_(std::move(view)), updated_(std::move(updated)) {
    rest_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { Ask(); });
    frames_.OnReplaced([this] {
        cardProblem_ = cardFailed;
        Ask();
    });
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

void UpdateLoop::AskPicture(const draw::ImageSize& size,
                            std::function<std::string(PointRenderer&)> draw,
                            std::function<void(const std::string&)> done) {
    if (isStopped_) {
        done(noEngine);
        return;
    }
    picture_ = Picture{view_(), std::move(draw), std::move(done)};
    picture_->request.size = size;
    Start();
}

void UpdateLoop::Stop() {
    isStopped_ = true;
    rest_.Stop();
    if (!picture_ || drawing_.joinable()) return;
    const Picture given = std::move(*picture_);
    picture_.reset();
    given.done(noEngine);
}

void UpdateLoop::Start() {
    if (isStopped_ || isRunning_ || !(isWanted_ || picture_)) return;
    isForPicture_ = picture_.has_value();
    ViewRequest request = isForPicture_ ? picture_->request : view_();
    if (isForPicture_) {
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
    const bool lacksMemory = count == 0 && result.shown > 0;
    if (isForPicture_ && !isStopped_) {
        if (lacksMemory && !renderer.IsLost())
            EndPicture(noMemoryForPicture);
        else
            DrawPicture();
        return;
    }
    const bool isLost = renderer.IsLost();
    frames_.GiveBack();
    if (!isLost) {
        frames_.DrawAgain();
        updated_(result, lacksMemory ? noMemory : cardProblem_);
    }
    End();
}

void UpdateLoop::DrawPicture() {
    PointRenderer& renderer = frames_.Lend();
    renderer.Release();
    drawing_ = std::thread([this, &renderer] {
        const std::string reason = picture_->draw(renderer);
        renderer.Release();
        mailbox_.CallAfter([this, reason] { EndPicture(reason); });
    });
}

void UpdateLoop::EndPicture(const std::string& reason) {
    if (drawing_.joinable()) drawing_.join();
    const Picture drawn = std::move(*picture_);
    picture_.reset();
    frames_.GiveBackAfterPicture();
    drawn.done(reason);
    End();
}

void UpdateLoop::End() {
    isRunning_ = false;
    Start();
}

}  // namespace vpc::viewer
