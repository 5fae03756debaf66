#include "viewer/panels/EntityPanel.h"

#include <algorithm>
#include <utility>

#include <wx/checkbox.h>
#include <wx/settings.h>

#include "viewer/panels/Text.h"

namespace vpc::viewer {

namespace {

wxString nameFor(int entity, const char* part) {
    return wxString::Format("entity/%d/%s", entity, part);
}

}  // namespace

EntityPanel::EntityPanel(wxWindow* parent, Actions actions)
    : SidePanel(parent, "Files"), actions_(std::move(actions)) {
    AddHint("No file is open.");
}

void EntityPanel::ShowEntities(const Drawing& drawing) {
    const auto shownAs = [](const Row& row, const Entity& entity) {
        return row.entity.id == entity.id && row.entity.name == entity.name;
    };
    if (!std::equal(rows_.begin(), rows_.end(), drawing.entities.begin(), drawing.entities.end(),
                    shownAs)) {
        rows_.clear();
        ClearRows();
        for (const Entity& entity : drawing.entities) AddRow(entity);
        if (rows_.empty()) AddHint("No file is open.");
        ShowRows();
    }
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        rows_[i].entity = drawing.entities[i];
        rows_[i].visible->SetValue(drawing.entities[i].visible);
    }
    if (drawing.Find(chosen_) == nullptr)
        Choose(drawing.entities.empty() ? 0 : drawing.entities.back().id);
    PaintChosen();
    ShowDescriptions();
}

void EntityPanel::AddRow(const Entity& entity) {
    const int id = entity.id;
    auto* panel = new wxPanel(&Rows());  // the rows'; what is made below is the panel's
    auto* visible = new wxCheckBox(panel, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, 0,
                                   wxDefaultValidator, nameFor(id, "visible"));
    visible->SetToolTip("Show or hide this file");
    auto* name = new wxStaticText(panel, wxID_ANY, fromUtf8(entity.name), wxDefaultPosition,
                                  wxDefaultSize, wxST_ELLIPSIZE_MIDDLE, nameFor(id, "name"));
    name->SetToolTip(fromUtf8(entity.file));
    auto* description = new wxStaticText(panel, wxID_ANY, wxString(), wxDefaultPosition,
                                         wxDefaultSize, wxST_ELLIPSIZE_END);
    description->SetFont(description->GetFont().Smaller());
    wxButton* close = MakeSmallButton(panel, wxString(wxUniChar(0x2715)), "Close this file",
                                      nameFor(id, "close"));
    auto* texts = new wxBoxSizer(wxVERTICAL);
    texts->Add(name, wxSizerFlags().Expand());
    texts->Add(description, wxSizerFlags().Expand());
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(visible, wxSizerFlags().CentreVertical().Border(wxLEFT | wxRIGHT, FromDIP(4)));
    row->Add(texts, wxSizerFlags(1).CentreVertical().Border(wxTOP | wxBOTTOM, FromDIP(3)));
    row->Add(close, wxSizerFlags().CentreVertical());
    panel->SetSizer(row);
    RowSizer().Add(panel, wxSizerFlags().Expand());

    visible->Bind(wxEVT_CHECKBOX,
                  [this, id](wxCommandEvent& event) { actions_.show(id, event.IsChecked()); });
    // Later, since the row and its button go.
    close->Bind(wxEVT_BUTTON,
                [this, id](wxCommandEvent&) { CallAfter([this, id] { actions_.close(id); }); });
    for (wxWindow* window : std::vector<wxWindow*>{panel, name, description})
        window->Bind(wxEVT_LEFT_DOWN, [this, id](wxMouseEvent& event) {
            Choose(id);
            event.Skip();
        });
    rows_.push_back({entity, panel, visible, description});
}

void EntityPanel::ShowDescriptions() {
    for (const Row& row : rows_) {
        const wxString text = actions_.describe(row.entity.id);
        if (row.description->GetLabelText() != text) row.description->SetLabelText(text);
    }
}

void EntityPanel::Choose(int entity) {
    chosen_ = entity;
    PaintChosen();
    actions_.choose(entity);
}

void EntityPanel::PaintChosen() {
    const wxColour base = wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW);
    const wxColour chosen = wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHT);
    for (const Row& row : rows_) {
        // A tint, so that the row's text stays readable.
        const auto mixed = [&](unsigned char a, unsigned char b) {
            return static_cast<unsigned char>((3 * a + b) / 4);
        };
        const wxColour tint(mixed(base.Red(), chosen.Red()), mixed(base.Green(), chosen.Green()),
                            mixed(base.Blue(), chosen.Blue()));
        row.panel->SetBackgroundColour(row.entity.id == chosen_ ? tint : wxColour());
        row.panel->Refresh();
    }
}

}  // namespace vpc::viewer
