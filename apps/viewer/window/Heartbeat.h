#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <wx/event.h>

namespace vpc::viewer {

/// Measures for how long the window's thread does not answer: a thread of its own sends it an event
/// every few milliseconds and looks how long that waits.
class Heartbeat : public wxEvtHandler {
public:
    Heartbeat();
    ~Heartbeat() override;
    Heartbeat(const Heartbeat&) = delete;
    Heartbeat& operator=(const Heartbeat&) = delete;

    /// The longest wait since the last call, in milliseconds.
    double TakeLongest();

private:
    using Clock = std::chrono::steady_clock;

    void Beat();
    void OnBeat(wxThreadEvent& event);
    double Waiting() const;

    double longest_ = 0.0;
    /// Null when no event is on its way.
    std::atomic<Clock::rep> sentAt_{0};
    bool ends_ = false;
    std::mutex mutex_;
    std::condition_variable ending_;
    std::thread thread_;
};

}  // namespace vpc::viewer
