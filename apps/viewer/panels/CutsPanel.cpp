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

template <class Cut>
auto CutsPanel::ChangeOf(std::vector<Cut> Drawing::*cuts, std::size_t index) {
    return [this, cuts, index, name = (drawing_.*cuts)[index].name](const std::string& label,
                                                                    const auto& edit) {
        Drawing changed = drawing_;
        std::vector<Cut>& all = changed.*cuts;
        // Rows may be older than the drawing for a moment, so that another cut has the index.
        if (index >= all.size() || all[index].name != name) return;
        edit(all, all.begin() + static_cast<std::ptrdiff_t>(index));
        change_(label, changed);
    };
}

void CutsPanel::AddSection(std::size_t index) {
    const Section& section = drawing_.sections[index];
    const auto change = ChangeOf(&Drawing::sections, index);
    AddRow(
        wxString::Format("section/%zu", index), section.name, section.enabled,
        [change](bool isEnabled) {
            change(isEnabled ? "switch section on" : "switch section off",
                   [isEnabled](auto&, auto one) { one->enabled = isEnabled; });
        },
        [change] { change("flip section", [](auto&, auto one) { *one = flipped(*one); }); },
        [change] { change("remove section", [](auto& all, auto one) { all.erase(one); }); });
}

void CutsPanel::AddClip(std::size_t index) {
    const Clip& clip = drawing_.clips[index];
    const auto change = ChangeOf(&Drawing::clips, index);
    AddRow(
        wxString::Format("clip/%zu", index),
        clip.name + (clip.keepsInside ? " (inside)" : " (outside)"), clip.enabled,
        [change](bool isEnabled) {
            change(isEnabled ? "switch clip on" : "switch clip off",
                   [isEnabled](auto&, auto one) { one->enabled = isEnabled; });
        },
        [change] {
            change("flip clip", [](auto&, auto one) { one->keepsInside = !one->keepsInside; });
        },
        [change] { change("remove clip", [](auto& all, auto one) { all.erase(one); }); });
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
