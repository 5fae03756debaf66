#include "viewer/preparing/PreparePanel.h"

#include <algorithm>

#include <wx/button.h>
#include <wx/gauge.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "viewer/document/Labels.h"
#include "viewer/preparing/PrepareQueue.h"

namespace vpc::viewer {

namespace {

constexpr int gap = 6;
constexpr int gaugeRange = 1000;
constexpr int gaugeWidth = 180;
constexpr int greatestHeight = 180;
/// A hundred scans that cannot be used fill no window; the tooltip has them all.
constexpr std::size_t mostLines = 5;

std::string doneText(const std::optional<PrepareProgress::Summary>& summary) {
    if (!summary) return "done";
    return "done: " + std::to_string(summary->points) + " points in " +
           decimalText(summary->seconds, 1) + " s, unit " + summary->unit;
}

/// How far a job has come, in a few words.
std::string stateText(const PrepareJob& job) {
    if (job.cancelling) return "cancelling";
    switch (job.state) {
        case PrepareJob::State::Running:
            return job.progress.Words();
        case PrepareJob::State::Done:
            return doneText(job.progress.GetSummary());
        case PrepareJob::State::Cancelled:
            return "cancelled; nothing of it is left";
        default:
            return job.StateName();
    }
}

/// What went wrong, and what the user should know, one below the other.
std::string remarksOf(const PrepareJob& job) {
    std::string remarks = job.problem;
    for (const std::string& warning : job.progress.Warnings())
        remarks += (remarks.empty() ? "Warning: " : "\nWarning: ") + warning;
    return remarks;
}

wxString firstLines(const wxString& text) {
    std::size_t end = 0;
    for (std::size_t lines = 0; lines < mostLines; ++lines) {
        end = text.find('\n', end);
        if (end == wxString::npos) return text;
        ++end;
    }
    return text.substr(0, end) + "...";
}

}  // namespace

// What is made with `new` here belongs to its window, which deletes it.
class PreparePanel::Row : public wxPanel {
public:
    Row(wxWindow* parent, PrepareQueue& queue, int id)
        : wxPanel(parent),
          id_(id),
          name_(new wxStaticText(this, wxID_ANY, {})),
          gauge_(new wxGauge(this, wxID_ANY, gaugeRange, wxDefaultPosition,
                             FromDIP(wxSize(gaugeWidth, -1)))),
          state_(new wxStaticText(this, wxID_ANY, {}, wxDefaultPosition, FromDIP(wxSize(60, -1)),
                                  wxST_ELLIPSIZE_END | wxST_NO_AUTORESIZE)),
          button_(new wxButton(this, wxID_ANY, "Cancel")),
          remarks_(new wxStaticText(this, wxID_ANY, {})) {
        // It is disabled or goes when it is pressed, and would take the keys with it.
        button_->SetCanFocus(false);
        auto* const line = new wxBoxSizer(wxHORIZONTAL);
        const wxSizerFlags centred = wxSizerFlags().CentreVertical().Border(wxRIGHT, FromDIP(gap));
        line->Add(name_, centred);
        line->Add(gauge_, centred);
        line->Add(state_, wxSizerFlags(centred).Proportion(1));
        line->Add(button_, wxSizerFlags().CentreVertical());
        auto* const all = new wxBoxSizer(wxVERTICAL);
        all->Add(line, wxSizerFlags().Expand());
        all->Add(remarks_, wxSizerFlags().Expand());
        SetSizer(all);
        // The row may go with this click, so the click ends first.
        button_->Bind(wxEVT_BUTTON, [this, &queue, id](wxCommandEvent&) {
            GetParent()->CallAfter(
                [&queue, id, ended = hasEnded_] { ended ? queue.Remove(id) : queue.Cancel(id); });
        });
    }

    int Id() const { return id_; }

    /// \param number of the job in the list
    /// \return whether the row may need another height
    bool ShowJob(const PrepareJob& job, std::size_t number) {
        hasEnded_ = job.HasEnded();
        const wxString target = wxString::FromUTF8(job.target);
        SetText(*name_, target.AfterLast('/'));
        name_->SetToolTip(target);
        gauge_->SetValue(static_cast<int>(job.progress.Share() * gaugeRange));
        gauge_->Show(!hasEnded_);
        SetText(*state_, wxString::FromUTF8(stateText(job)));
        const wxString label = hasEnded_ ? "Remove" : "Cancel";
        if (button_->GetLabel() != label) button_->SetLabel(label);
        button_->Enable(!job.cancelling);
        button_->SetName(wxString::Format("preparing/%zu/%s", number, label.Lower()));
        const bool remarks = ShowRemarks(wxString::FromUTF8(remarksOf(job)));
        Layout();
        return remarks;
    }

private:
    static void SetText(wxStaticText& text, const wxString& label) {
        if (text.GetLabelText() != label) text.SetLabelText(label);
    }

    bool ShowRemarks(const wxString& remarks) {
        const int width = GetParent()->GetClientSize().x - 2 * FromDIP(gap);
        if (remarks == shownRemarks_ && width == wrapWidth_) return false;
        shownRemarks_ = remarks;
        wrapWidth_ = width;
        remarks_->Show(!remarks.empty());
        remarks_->SetLabelText(firstLines(remarks));
        remarks_->Wrap(width);
        remarks_->SetToolTip(remarks);
        return true;
    }

    int id_;
    bool hasEnded_ = false;
    wxStaticText* name_;
    wxGauge* gauge_;
    wxStaticText* state_;
    wxButton* button_;
    wxStaticText* remarks_;
    wxString shownRemarks_;
    int wrapWidth_ = 0;
};

PreparePanel::PreparePanel(wxWindow* parent, PrepareQueue& queue)
    : wxScrolled<wxPanel>(parent), queue_(queue) {
    SetSizer(new wxBoxSizer(wxVERTICAL));
    SetScrollRate(0, FromDIP(gap));
    Hide();
    // Remarks fill the width.
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        event.Skip();
        CallAfter([this] { ShowJobs(); });
    });
    ShowJobs();
}

PreparePanel::~PreparePanel() = default;

void PreparePanel::ShowJobs() {
    bool changesHeight = MatchRows();
    for (std::size_t i = 0; i < rows_.size(); ++i)
        changesHeight = rows_[i]->ShowJob(queue_.Jobs()[i], i) || changesHeight;
    if (changesHeight) FitHeight();
}

bool PreparePanel::MatchRows() {
    const std::vector<PrepareJob>& jobs = queue_.Jobs();
    const auto isGone = [&](const Row* row) {
        return std::none_of(jobs.begin(), jobs.end(),
                            [&](const PrepareJob& job) { return job.id == row->Id(); });
    };
    bool changed = std::erase_if(rows_, [&](Row* row) {
                       const bool gone = isGone(row);
                       if (gone) row->Destroy();
                       return gone;
                   }) > 0;
    // Jobs are added at the end only.
    for (std::size_t i = rows_.size(); i < jobs.size(); ++i) {
        rows_.push_back(new Row(this, queue_, jobs[i].id));
        GetSizer()->Add(rows_.back(), wxSizerFlags().Expand().Border(wxALL, FromDIP(gap)));
        changed = true;
    }
    return changed;
}

void PreparePanel::FitHeight() {
    FitInside();
    const int height = std::min(GetSizer()->GetMinSize().y, FromDIP(greatestHeight));
    SetMinSize({-1, height});
    Show(!rows_.empty());
    GetParent()->Layout();
}

}  // namespace vpc::viewer
