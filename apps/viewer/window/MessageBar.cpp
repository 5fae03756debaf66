#include "viewer/window/MessageBar.h"

#include <algorithm>

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "viewer/panels/Text.h"

namespace vpc::viewer {

namespace {

constexpr std::size_t mostSentences = 4;

/// The library's messages come without one, as hosts know them.
std::string withPoint(std::string sentence) {
    if (!sentence.empty() && sentence.back() != '.') sentence += '.';
    return sentence;
}

const wxColour paper(255, 243, 209);
const wxColour ink(74, 56, 0);

}  // namespace

MessageBar::MessageBar(wxWindow* parent)
    : wxPanel(parent), text_(new wxStaticText(this, wxID_ANY, wxString())) {
    SetBackgroundColour(paper);
    text_->SetForegroundColour(ink);
    auto* close = new wxButton(this, wxID_ANY, wxString(wxUniChar(0x2715)), wxDefaultPosition,
                               wxDefaultSize, wxBU_EXACTFIT | wxBORDER_NONE, wxDefaultValidator,
                               "message/close");  // the panel's
    close->SetForegroundColour(ink);
    close->SetToolTip("Close");
    close->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { OnClosed(); });
    auto* row = new wxBoxSizer(wxHORIZONTAL);  // the panel's
    row->Add(text_, wxSizerFlags(1).CentreVertical().Border(wxALL, FromDIP(8)));
    row->Add(close, wxSizerFlags().Top().Border(wxALL, FromDIP(3)));
    SetSizer(row);
    Hide();
    parent->Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        event.Skip();
        if (IsShown()) CallAfter([this] { ShowAll(); });  // lines are as long as the window is wide
    });
}

void MessageBar::Tell(const std::string& sentence) {
    const std::string whole = withPoint(sentence);
    // The bar's new place would bring another picture, and where that fails this sentence again.
    if (!told_.empty() && told_.back() == whole) return;
    std::erase(told_, whole);
    told_.push_back(whole);
    if (told_.size() > mostSentences) told_.erase(told_.begin());
    ShowAll();
}

void MessageBar::SetStanding(const std::string& sentence) {
    const std::string whole = withPoint(sentence);
    if (whole == standing_) return;
    standing_ = whole;
    read_.clear();
    ShowAll();
}

std::string MessageBar::Shown() const {
    std::vector<std::string> all = told_;
    if (standing_ != read_) all.push_back(standing_);
    return linesOf(all);
}

void MessageBar::ShowAll() {
    const std::string text = Shown();
    text_->SetLabelText(fromUtf8(text));
    text_->Wrap(GetParent()->GetClientSize().x - FromDIP(70));
    Show(!text.empty());
    GetParent()->Layout();
}

void MessageBar::OnClosed() {
    told_.clear();
    read_ = standing_;
    ShowAll();
}

}  // namespace vpc::viewer
