#pragma once

#include <string>
#include <vector>

#include <wx/panel.h>

#include "viewer/window/Commands.h"

class wxAnyButton;

namespace vpc::viewer {

/// A row of buttons for commands. Their names for tests are "tool/" and the command's.
class ToolStrip : public wxPanel {
public:
    /// \param names of the commands, an empty one for a gap
    ToolStrip(wxWindow* parent, const Commands& commands, const std::vector<std::string>& names);

    /// Shows which are on and which can be used.
    void ShowState();

private:
    struct Button {
        const Command* command;
        wxAnyButton* button;
    };

    wxAnyButton* MakeButton(const Command& command);

    std::vector<Button> buttons_;
};

}  // namespace vpc::viewer
