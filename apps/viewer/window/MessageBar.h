#pragma once

#include <string>
#include <vector>

#include <wx/panel.h>

class wxStaticText;

namespace vpc::viewer {

/// Sentences for the user, over the view, until they are read. Its button has the name
/// "message/close" for tests.
class MessageBar : public wxPanel {
public:
    explicit MessageBar(wxWindow* parent);

    /// Shown until the user closes the bar.
    void Tell(const std::string& sentence);
    /// What holds of the view as it is; empty where all is well. It goes by itself.
    void SetStanding(const std::string& sentence);
    /// What is shown; empty while the bar is hidden.
    std::string Shown() const;

private:
    void ShowAll();
    void OnClosed();

    wxStaticText* text_;
    std::vector<std::string> told_;
    std::string standing_;
    /// The one that the user has closed.
    std::string read_;
};

}  // namespace vpc::viewer
