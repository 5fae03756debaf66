#include "viewer/window/ToolStrip.h"

#include <wx/bmpbuttn.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/statline.h>
#include <wx/tglbtn.h>

#include "viewer/panels/Text.h"
#include "viewer/window/ToolIcons.h"

namespace vpc::viewer {

ToolStrip::ToolStrip(wxWindow* parent, const Commands& commands,
                     const std::vector<std::string>& names)
    : wxPanel(parent) {
    auto* row = new wxBoxSizer(wxHORIZONTAL);  // the panel's
    for (const std::string& name : names) {
        if (name.empty()) {
            row->Add(
                new wxStaticLine(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxLI_VERTICAL),
                wxSizerFlags().Expand().Border(wxALL, 5));
            continue;
        }
        const Command* command = commands.Find(name);
        wxCHECK2_MSG(command != nullptr, continue, fromUtf8(name));
        wxAnyButton* button = MakeButton(*command);
        buttons_.push_back({command, button});
        row->Add(button, wxSizerFlags().Border(wxTOP | wxBOTTOM, 2));
    }
    SetSizer(row);
    ShowState();
}

wxAnyButton* ToolStrip::MakeButton(const Command& command) {
    const wxBitmapBundle icon =
        iconOf(command.name, wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT));
    const wxString name = fromUtf8("tool/" + command.name);
    const wxSize size = FromDIP(wxSize(34, 34));
    wxAnyButton* button = nullptr;  // the panel's
    if (command.isOn)
        button = new wxBitmapToggleButton(this, wxID_ANY, icon, wxDefaultPosition, size,
                                          wxBORDER_NONE, wxDefaultValidator, name);
    else
        button = new wxBitmapButton(this, wxID_ANY, icon, wxDefaultPosition, size, wxBORDER_NONE,
                                    wxDefaultValidator, name);
    const auto run = [this, &command](wxCommandEvent&) {
        command.run();
        ShowState();
    };
    if (command.isOn)
        button->Bind(wxEVT_TOGGLEBUTTON, run);
    else
        button->Bind(wxEVT_BUTTON, run);
    const wxString key = command.label.AfterFirst('\t');
    button->SetToolTip(key.empty() ? command.help : command.help + " (" + key + ")");
    // Keys stay with the view.
    button->SetCanFocus(false);
    return button;
}

void ToolStrip::ShowState() {
    for (const Button& entry : buttons_) {
        if (entry.command->isOn)
            static_cast<wxBitmapToggleButton*>(entry.button)->SetValue(entry.command->isOn());
        if (entry.command->isEnabled) entry.button->Enable(entry.command->isEnabled());
    }
}

}  // namespace vpc::viewer
