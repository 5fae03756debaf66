#include "viewer/window/PointSizeDialog.h"

#include <array>

#include <wx/choice.h>
#include <wx/dialog.h>
#include <wx/sizer.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>

namespace vpc::viewer {

namespace {

constexpr double usualPixels = 2.0;
/// In drawing units.
constexpr double usualLength = 0.05;

bool isPossible(PointSizing sizing, double size) {
    return sizing != PointSizing::Fixed || (size >= 1.0 && size <= 64.0);
}

}  // namespace

bool askForPointSize(wxWindow* parent, ViewStyle& style) {
    wxDialog dialog(parent, wxID_ANY, "Point size");
    const std::array<wxString, 3> names{"As large as closes surfaces", "Fixed, in pixels",
                                        "By distance, in drawing units"};
    auto* sizing = new wxChoice(&dialog, wxID_ANY, wxDefaultPosition, wxDefaultSize, 3,
                                names.data(), 0, wxDefaultValidator, "dialog/Sizing");
    auto* size =
        new wxSpinCtrlDouble(&dialog, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                             wxSP_ARROW_KEYS, 0.0001, 1000.0, style.pointSize, 0.5, "dialog/Size");
    size->SetDigits(4);
    const auto chosen = [sizing] { return static_cast<PointSizing>(sizing->GetSelection()); };
    sizing->SetSelection(static_cast<int>(style.sizing));
    size->Enable(chosen() != PointSizing::Automatic);
    sizing->Bind(wxEVT_CHOICE, [&](wxCommandEvent&) {
        size->Enable(chosen() != PointSizing::Automatic);
        if (chosen() != style.sizing)
            size->SetValue(chosen() == PointSizing::ByDistance ? usualLength : usualPixels);
    });
    auto* table = new wxFlexGridSizer(2, dialog.FromDIP(wxSize(12, 8)));
    table->Add(new wxStaticText(&dialog, wxID_ANY, "Points are"), wxSizerFlags().CentreVertical());
    table->Add(sizing, wxSizerFlags().Expand());
    table->Add(new wxStaticText(&dialog, wxID_ANY, "Size"), wxSizerFlags().CentreVertical());
    table->Add(size, wxSizerFlags().Expand());
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(table, wxSizerFlags().Expand().Border(wxALL, dialog.FromDIP(12)));
    column->Add(dialog.CreateButtonSizer(wxOK | wxCANCEL),
                wxSizerFlags().Expand().Border(wxALL, dialog.FromDIP(12)));
    dialog.SetSizerAndFit(column);
    if (wxWindow* ok = dialog.FindWindow(wxID_OK)) ok->SetName("dialog/OK");
    if (wxWindow* cancel = dialog.FindWindow(wxID_CANCEL)) cancel->SetName("dialog/Cancel");
    dialog.CentreOnParent();
    if (dialog.ShowModal() != wxID_OK || !isPossible(chosen(), size->GetValue())) return false;
    style.sizing = chosen();
    style.pointSize = size->GetValue();
    return true;
}

}  // namespace vpc::viewer
