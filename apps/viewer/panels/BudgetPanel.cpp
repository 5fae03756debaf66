#include "viewer/panels/BudgetPanel.h"

#include <cmath>
#include <utility>

#include <wx/sizer.h>
#include <wx/slider.h>
#include <wx/stattext.h>

#include "viewer/panels/BudgetRange.h"
#include "viewer/panels/Text.h"

namespace vpc::viewer {

namespace {

/// Steps of the slider, each the same factor.
constexpr int steps = 100;

unsigned long long budgetAt(int step) {
    const double least = std::log10(static_cast<double>(BudgetRange::least));
    const double most = std::log10(static_cast<double>(BudgetRange::onSlider));
    const double value = std::pow(10.0, least + (most - least) * step / steps);
    // Two digits that count are enough.
    const double unit = std::pow(10.0, std::floor(std::log10(value)) - 1.0);
    return static_cast<unsigned long long>(std::round(value / unit) * unit);
}

int stepOf(unsigned long long budget) {
    int step = 0;
    while (step < steps && budgetAt(step) < budget) ++step;
    return step;
}

}  // namespace

BudgetPanel::BudgetPanel(wxWindow* parent, std::function<void(unsigned long long)> change)
    : wxPanel(parent), change_(std::move(change)) {
    text_ = new wxStaticText(this, wxID_ANY, wxString());
    text_->SetFont(text_->GetFont().Bold());
    slider_ = new wxSlider(this, wxID_ANY, 0, 0, steps, wxDefaultPosition, wxDefaultSize,
                           wxSL_HORIZONTAL, wxDefaultValidator, "budget");
    slider_->SetToolTip("How many points are shown at most, of all files together");
    auto* column = new wxBoxSizer(wxVERTICAL);  // the panel's
    column->Add(text_, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxTOP, FromDIP(8)));
    column->Add(slider_, wxSizerFlags().Expand().Border(wxALL, FromDIP(4)));
    SetSizer(column);
    slider_->Bind(wxEVT_SLIDER, [this](wxCommandEvent&) {
        ShowText(budgetAt(slider_->GetValue()));
        settle_.StartOnce(150);
    });
    settle_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { change_(budgetAt(slider_->GetValue())); });
}

void BudgetPanel::ShowBudget(unsigned long long budget) {
    if (settle_.IsRunning()) return;
    ShowText(budget);
    slider_->SetValue(stepOf(budget));
}

void BudgetPanel::ShowText(unsigned long long budget) {
    const wxString text = "Points at most: " + grouped(budget);
    if (text_->GetLabelText() != text) text_->SetLabelText(text);
}

}  // namespace vpc::viewer
