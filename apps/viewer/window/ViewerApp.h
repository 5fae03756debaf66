#pragma once

#include <memory>

#include <wx/app.h>

#include "viewer/window/CommandLine.h"

namespace vpc::viewer {

class Heartbeat;
class MainFrame;

/// The program's beginning and end.
class ViewerApp : public wxApp {
public:
    explicit ViewerApp(CommandLine commandLine);
    ~ViewerApp() override;

    bool Initialize(int& count, wxChar** arguments) override;
    bool OnInit() override;
    int OnExit() override;
    /// Sees the report's key wherever the keyboard is, in dialogs too.
    int FilterEvent(wxEvent& event) override;

private:
    CommandLine commandLine_;
    std::unique_ptr<Heartbeat> heartbeat_;
    /// wxWidgets deletes it.
    MainFrame* frame_ = nullptr;
};

}  // namespace vpc::viewer
