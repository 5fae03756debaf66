#include "viewer/window/MessageBar.h"

#include <algorithm>

#include <wx/artprov.h>
#include <wx/button.h>

#include "viewer/panels/Text.h"

namespace vpc::viewer {

namespace {

constexpr std::size_t mostSentences = 3;

}  // namespace

MessageBar::MessageBar(wxWindow* parent) : wxInfoBar(parent, wxID_ANY) {
    AddButton(wxID_CLOSE);
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { OnClosed(); }, wxID_CLOSE);
}

void MessageBar::Tell(const std::string& sentence) {
    std::erase(told_, sentence);
    told_.push_back(sentence);
    if (told_.size() > mostSentences) told_.erase(told_.begin());
    ShowAll();
}

void MessageBar::SetStanding(const std::string& sentence) {
    if (sentence == standing_) return;
    standing_ = sentence;
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
    if (text.empty())
        Dismiss();
    else
        ShowMessage(fromUtf8(text), wxICON_WARNING);
}

void MessageBar::OnClosed() {
    told_.clear();
    read_ = standing_;
    Dismiss();
}

}  // namespace vpc::viewer
