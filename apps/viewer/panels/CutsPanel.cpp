#include "viewer/panels/CutsPanel.h"

#include <utility>

#include <wx/checkbox.h>

#include "viewer/document/SectionMaker.h"
#include "viewer/panels/Text.h"

namespace vpc::viewer {

namespace {

constexpr const char* hint = "Cut with the section and clip tools.";

}  // namespace

CutsPanel::CutsPanel(wxWindow* parent, Change change)
    : SidePanel(parent, "Sections and clips"), change_(std::move(change)) {
    AddHint(hint);
}

void CutsPanel::ShowCuts(const Drawing& drawing) {
    const bool isSame = drawing_.sections == drawing.sections && drawing_.clips == drawing.clips;
    drawing_ = drawing;
    if (isSame) return;
    ClearRows();
    for (std::size_t i = 0; i < drawing_.sections.size(); ++i) AddSection(i);
    for (std::size_t i = 0; i < drawing_.clips.size(); ++i) AddClip(i);
    if (drawing_.sections.empty() && drawing_.clips.empty()) AddHint(hint);
    ShowRows();
}

void CutsPanel::AddSection(std::size_t index) {
    const Section& section = drawing_.sections[index];
    AddRow(
        wxString::Format("section/%zu", index), section.name, section.enabled,
        [this, index](bool isEnabled) {
            Drawing changed = drawing_;
            changed.sections[index].enabled = isEnabled;
            change_(isEnabled ? "switch section on" : "switch section off", changed);
        },
        [this, index] {
            Drawing changed = drawing_;
            changed.sections[index] = flipped(changed.sections[index]);
            change_("flip section", changed);
        },
        [this, index] {
            Drawing changed = drawing_;
            changed.sections.erase(changed.sections.begin() + static_cast<std::ptrdiff_t>(index));
            change_("remove section", changed);
        });
}

void CutsPanel::AddClip(std::size_t index) {
    const Clip& clip = drawing_.clips[index];
    AddRow(
        wxString::Format("clip/%zu", index),
        clip.name + (clip.keepsInside ? " (inside)" : " (outside)"), clip.enabled,
        [this, index](bool isEnabled) {
            Drawing changed = drawing_;
            changed.clips[index].enabled = isEnabled;
            change_(isEnabled ? "switch clip on" : "switch clip off", changed);
        },
        [this, index] {
            Drawing changed = drawing_;
            changed.clips[index].keepsInside = !changed.clips[index].keepsInside;
            change_("flip clip", changed);
        },
        [this, index] {
            Drawing changed = drawing_;
            changed.clips.erase(changed.clips.begin() + static_cast<std::ptrdiff_t>(index));
            change_("remove clip", changed);
        });
}

void CutsPanel::AddRow(const wxString& name, const std::string& text, bool isEnabled,
                       std::function<void(bool)> enable, std::function<void()> flip,
                       std::function<void()> remove) {
    auto* enabled = new wxCheckBox(&Rows(), wxID_ANY, fromUtf8(text), wxDefaultPosition,
                                   wxDefaultSize, 0, wxDefaultValidator, name + "/enabled");
    enabled->SetValue(isEnabled);
    wxButton* flipping = MakeSmallButton(&Rows(), wxString(wxUniChar(0x21C4)),
                                         "Keep the other side", name + "/flip");
    wxButton* removing =
        MakeSmallButton(&Rows(), wxString(wxUniChar(0x2715)), "Remove", name + "/remove");
    auto* row = new wxBoxSizer(wxHORIZONTAL);  // the rows'
    row->Add(enabled, wxSizerFlags().CentreVertical().Border(wxLEFT, FromDIP(4)));
    row->AddStretchSpacer();
    row->Add(flipping, wxSizerFlags().CentreVertical());
    row->Add(removing, wxSizerFlags().CentreVertical());
    RowSizer().Add(row, wxSizerFlags().Expand());

    // All of them later, since the change makes the rows anew.
    enabled->Bind(wxEVT_CHECKBOX, [this, enable](wxCommandEvent& event) {
        CallAfter([enable, on = event.IsChecked()] { enable(on); });
    });
    flipping->Bind(wxEVT_BUTTON, [this, flip](wxCommandEvent&) { CallAfter(flip); });
    removing->Bind(wxEVT_BUTTON, [this, remove](wxCommandEvent&) { CallAfter(remove); });
}

}  // namespace vpc::viewer
