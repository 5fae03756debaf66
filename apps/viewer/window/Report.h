#pragma once

#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "viewer/window/Heartbeat.h"

namespace vpc::viewer {

class MainFrame;

/// The program's state as JSON, for tests and for support: written when it is asked for and nothing
/// is under way, and at the end.
class Report {
public:
    /// Measures from here on for how long the window does not answer.
    Report(MainFrame& frame, std::string file);
    ~Report();
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

    void Ask();
    void Write();

private:
    void OnIdle(wxIdleEvent& event);
    nlohmann::json State();
    nlohmann::json Entities() const;
    nlohmann::json Controls() const;
    nlohmann::json Measured() const;

    MainFrame& frame_;
    std::string file_;
    Heartbeat heartbeat_;
    bool isAsked_ = false;
    int serial_ = 0;
};

}  // namespace vpc::viewer
