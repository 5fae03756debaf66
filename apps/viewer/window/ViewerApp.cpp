#include "viewer/window/ViewerApp.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include <wx/config.h>
#include <wx/image.h>
#include <wx/log.h>

#include "viewer/panels/Text.h"
#include "viewer/window/MainFrame.h"

namespace vpc::viewer {

namespace {

/// A fault of the program's own: a dialog would stop the tests, and go on with what is wrong.
void endAtAssert(const wxString& file, int line, const wxString& function,
                 const wxString& condition, const wxString& message) {
    std::fprintf(stderr, "vpc-viewer: %s:%d: %s: %s %s\n", toUtf8(file).c_str(), line,
                 toUtf8(function).c_str(), toUtf8(condition).c_str(), toUtf8(message).c_str());
    std::_Exit(3);
}

/// The same where people work: it is told, and the program goes on.
void tellAtAssert(const wxString& file, int line, const wxString&, const wxString& condition,
                  const wxString& message) {
    std::fprintf(stderr, "vpc-viewer: %s:%d: %s %s\n", toUtf8(file).c_str(), line,
                 toUtf8(condition).c_str(), toUtf8(message).c_str());
}

bool isStrict([[maybe_unused]] const CommandLine& commandLine) {
#ifdef NDEBUG
    return !commandLine.reportFile.empty();
#else
    return true;
#endif
}

}  // namespace

ViewerApp::ViewerApp(CommandLine commandLine) : commandLine_(std::move(commandLine)) {
    wxSetAssertHandler(isStrict(commandLine_) ? endAtAssert : tellAtAssert);
}

bool ViewerApp::Initialize(int& count, wxChar** arguments) {
    {
        const wxLogNull quiet;
        if (wxApp::Initialize(count, arguments)) return true;
    }
    std::fputs(
        "vpc-viewer: there is no display to open a window on; set DISPLAY, or use vpc view --image "
        "to draw without one\n",
        stderr);
    std::_Exit(1);
}

bool ViewerApp::OnInit() {
    // Numbers are read and shown with a point everywhere.
    std::setlocale(LC_NUMERIC, "C");
    SetAppName("vpc-viewer");
    SetAppDisplayName("vpc-viewer");
    wxImage::AddHandler(new wxPNGHandler);      // wxWidgets deletes it
    auto* frame = new MainFrame(commandLine_);  // wxWidgets deletes it
    frame_ = frame;
    frame->Show();
    frame->Start();
    return true;
}

int ViewerApp::FilterEvent(wxEvent& event) {
    if (event.GetEventType() == wxEVT_CHAR_HOOK && frame_) {
        const auto& key = static_cast<const wxKeyEvent&>(event);
        if (key.GetKeyCode() == WXK_F12 && key.ControlDown() && key.ShiftDown()) {
            static_cast<MainFrame*>(frame_.get())->AskForReport();
            return Event_Processed;
        }
    }
    return Event_Skip;
}

}  // namespace vpc::viewer
