#pragma once

#include <wx/app.h>
#include <wx/weakref.h>
#include <wx/window.h>

#include "viewer/window/CommandLine.h"

namespace vpc::viewer {

/// The program's beginning and end.
class ViewerApp : public wxApp {
public:
    explicit ViewerApp(CommandLine commandLine);

    bool Initialize(int& count, wxChar** arguments) override;
    bool OnInit() override;
    /// Sees the report's key wherever the keyboard is, in dialogs too.
    int FilterEvent(wxEvent& event) override;

private:
    CommandLine commandLine_;
    /// The main frame, as long as it is there.
    wxWindowRef frame_;
};

}  // namespace vpc::viewer
