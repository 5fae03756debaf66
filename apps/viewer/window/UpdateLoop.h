#pragma once

#include <functional>
#include <optional>
#include <string>
#include <thread>

#include <wx/timer.h>

#include "viewer/engine/Engine.h"
#include "viewer/window/FrameLoop.h"

namespace vpc::viewer {

/// Asks the engine for the points of the view, and brings them to the renderer. One request is
/// under way at a time; what it brings is dropped when the view has changed meanwhile.
class UpdateLoop {
public:
    /// The view as it is now.
    using View = std::function<ViewRequest()>;
    /// Gets what the points on the screen are; a sentence where not all of them could be kept.
    using Updated = std::function<void(const ViewResult&, const std::string& problem)>;

    UpdateLoop(Engine& engine, FrameLoop& frames, View view, Updated updated);
    /// Waits for a picture that is being drawn.
    ~UpdateLoop();
    UpdateLoop(const UpdateLoop&) = delete;
    UpdateLoop& operator=(const UpdateLoop&) = delete;

    /// The camera has moved: asks when it has come to rest.
    void AskAtRest();
    /// Something else has changed.
    void Ask();
    /// A drag changes the drawing: asks for few points, and shows even what comes late, so that
    /// pictures follow the mouse.
    void AskPreview();
    /// Has a picture drawn from the view with another size, with the points of that picture. The
    /// window's view follows again by itself. One picture at a time.
    /// \param draw called in a thread of its own, with the renderer that has the points; returns
    ///             why there is no picture, or an empty text
    /// \param done called in the window's thread, when that is done or cannot be done, with the
    ///             reason: words that may follow a colon
    void AskPicture(const draw::ImageSize& size, std::function<std::string(PointRenderer&)> draw,
                    std::function<void(const std::string& reason)> done);

    /// Called when the camera has come to rest, before the engine is asked.
    void OnRest(std::function<void()> rested) { rested_ = std::move(rested); }
    bool IsIdle() const {
        return isStopped_ || (!isRunning_ && !isWanted_ && !rest_.IsRunning() && !picture_);
    }
    /// Whether a picture that was asked for is not done yet.
    bool DrawsPicture() const { return picture_.has_value(); }
    /// Nothing is asked for any more: there is no engine.
    void Stop();

private:
    struct Picture {
        /// The view as it was when the picture was asked for.
        ViewRequest request;
        std::function<std::string(PointRenderer&)> draw;
        std::function<void(const std::string& reason)> done;
    };

    /// Asks the engine where something is wanted and nothing is under way.
    void Start();
    void OnResult(const ViewResult& result);
    void OnFetched(const ViewResult& result, std::size_t count);
    void DrawPicture();
    void EndPicture(const std::string& reason);
    void End();
    bool IsOutdated() const;

    Engine& engine_;
    FrameLoop& frames_;
    View view_;
    Updated updated_;
    std::function<void()> rested_;
    wxTimer rest_;
    bool isStopped_ = false;
    /// Why the processor draws although the graphics card began to; empty where all is well.
    std::string cardProblem_;
    bool isWanted_ = false;
    bool isRunning_ = false;
    bool isPreviewWanted_ = false;
    /// What is under way.
    bool isPreview_ = false;
    bool isForPicture_ = false;
    std::optional<Picture> picture_;
    wxEvtHandler mailbox_;
    std::thread drawing_;
};

}  // namespace vpc::viewer
