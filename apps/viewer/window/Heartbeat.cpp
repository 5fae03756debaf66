#include "viewer/window/Heartbeat.h"

#include <algorithm>
#include <utility>

namespace vpc::viewer {

namespace {

constexpr std::chrono::milliseconds interval{5};

}  // namespace

Heartbeat::Heartbeat() {
    Bind(wxEVT_THREAD, &Heartbeat::OnBeat, this);
    thread_ = std::thread([this] { Beat(); });
}

Heartbeat::~Heartbeat() {
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
    }
    ending_.notify_all();
    thread_.join();
}

double Heartbeat::TakeLongest() {
    return std::max(std::exchange(longest_, 0.0), Waiting());
}

void Heartbeat::Beat() {
    std::unique_lock lock(mutex_);
    while (!ending_.wait_for(lock, interval, [this] { return ends_; })) {
        if (sentAt_ != 0) continue;
        sentAt_ = Clock::now().time_since_epoch().count();
        QueueEvent(new wxThreadEvent);  // wxWidgets deletes it
    }
}

void Heartbeat::OnBeat(wxThreadEvent&) {
    longest_ = std::max(longest_, Waiting());
    sentAt_ = 0;
}

double Heartbeat::Waiting() const {
    const Clock::rep sent = sentAt_;
    if (sent == 0) return 0.0;
    return std::chrono::duration<double, std::milli>(Clock::now().time_since_epoch() -
                                                     Clock::duration(sent))
        .count();
}

}  // namespace vpc::viewer
