#include "viewer/window/ScreenshotDialog.h"

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/sizer.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>

namespace vpc::viewer {

namespace {

constexpr int smallest = 64;

wxSpinCtrl* addNumber(wxDialog& dialog, wxSizer& table, const wxString& label, int value,
                      int largest) {
    table.Add(new wxStaticText(&dialog, wxID_ANY, label), wxSizerFlags().CentreVertical());
    auto* number = new wxSpinCtrl(&dialog, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                                  wxSP_ARROW_KEYS, smallest, largest, value, "dialog/" + label);
    table.Add(number, wxSizerFlags(1).Expand());
    return number;
}

}  // namespace

std::optional<draw::ImageSize> askForPictureSize(wxWindow* parent, const draw::ImageSize& proposed,
                                                 int largest) {
    wxDialog dialog(parent, wxID_ANY, "Save a picture");
    auto* table = new wxFlexGridSizer(2, dialog.FromDIP(wxSize(12, 8)));
    table->AddGrowableCol(1);
    const wxSpinCtrl* width = addNumber(dialog, *table, "Width", proposed.width, largest);
    const wxSpinCtrl* height = addNumber(dialog, *table, "Height", proposed.height, largest);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(new wxStaticText(&dialog, wxID_ANY, "How large is the picture to be, in pixels?"),
                wxSizerFlags().Border(wxALL, dialog.FromDIP(12)));
    column->Add(table, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, dialog.FromDIP(12)));
    column->Add(dialog.CreateButtonSizer(wxOK | wxCANCEL),
                wxSizerFlags().Expand().Border(wxALL, dialog.FromDIP(12)));
    if (wxWindow* save = dialog.FindWindow(wxID_OK)) {
        save->SetLabel("&Save...");
        save->SetName("dialog/Save");
    }
    if (wxWindow* cancel = dialog.FindWindow(wxID_CANCEL)) cancel->SetName("dialog/Cancel");
    dialog.SetSizerAndFit(column);
    dialog.CentreOnParent();
    if (dialog.ShowModal() != wxID_OK) return {};
    return draw::ImageSize{width->GetValue(), height->GetValue()};
}

}  // namespace vpc::viewer
