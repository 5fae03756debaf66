#include "viewer/panels/SidePanel.h"

#include <wx/settings.h>

namespace vpc::viewer {

SidePanel::SidePanel(wxWindow* parent, const wxString& heading)
    : wxPanel(parent), rows_(new wxScrolledWindow(this, wxID_ANY)) {
    auto* column = new wxBoxSizer(wxVERTICAL);  // the panel's
    auto* title = new wxStaticText(this, wxID_ANY, heading);
    title->SetFont(title->GetFont().Bold());
    column->Add(title, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxTOP, FromDIP(8)));
    column->Add(rows_, wxSizerFlags(1).Expand().Border(wxALL, FromDIP(4)));
    SetSizer(column);
    rows_->SetSizer(new wxBoxSizer(wxVERTICAL));
    rows_->SetScrollRate(0, FromDIP(10));
}

void SidePanel::ClearRows() {
    rows_->GetSizer()->Clear(true);
}

void SidePanel::ShowRows() {
    rows_->FitInside();
    rows_->Layout();
}

wxButton* SidePanel::MakeSmallButton(wxWindow* parent, const wxString& sign, const wxString& help,
                                     const wxString& name) {
    auto* button =
        new wxButton(parent, wxID_ANY, sign, wxDefaultPosition, wxDefaultSize,
                     wxBU_EXACTFIT | wxBORDER_NONE, wxDefaultValidator, name);  // the parent's
    button->SetToolTip(help);
    return button;
}

void SidePanel::AddHint(const wxString& text) {
    auto* hint = new wxStaticText(rows_, wxID_ANY, text);  // the rows'
    hint->SetForegroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT));
    RowSizer().Add(hint, wxSizerFlags().Border(wxALL, FromDIP(4)));
}

}  // namespace vpc::viewer
