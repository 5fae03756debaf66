#include "viewer/preparing/PrepareDialog.h"

#include <algorithm>
#include <array>

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/dialog.h>
#include <wx/filedlg.h>
#include <wx/filename.h>
#include <wx/listbox.h>
#include <wx/msgdlg.h>
#include <wx/sizer.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include "viewer/preparing/PrepareQueue.h"

namespace vpc::viewer {

namespace {

constexpr int mostPoints = 1'000'000'000;
constexpr int gap = 8;
/// As `vpc prepare --tree` takes them, and as people read them.
constexpr std::array<const char*, 2> trees = {"octree", "kd"};
constexpr std::array<const char*, 2> treeLabels = {"Octree", "Kd-tree"};
constexpr const char* treeExtension = "vpt";

/// A pattern for each extension in small and in capital letters, which the file dialog tells apart.
wxString scanPatterns() {
    wxString patterns;
    for (const char* extension : {"las", "pts", "ptx", "xyz", "csv", "txt", "asc"})
        patterns += (patterns.empty() ? "*." : ";*.") + wxString(extension) + ";*." +
                    wxString(extension).Upper();
    return patterns;
}

// What is made with `new` here belongs to the dialog, which deletes it.
class PrepareDialog : public wxDialog {
public:
    PrepareDialog(wxWindow* parent, PrepareQueue& queue, const std::vector<std::string>& scans)
        : wxDialog(parent, wxID_ANY, "Prepare scans", wxDefaultPosition, wxDefaultSize,
                   wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER),
          queue_(queue) {
        auto* const all = new wxBoxSizer(wxVERTICAL);
        const wxSizerFlags wide = wxSizerFlags().Expand().Border(wxALL, FromDIP(gap));
        all->Add(Scans(), wxSizerFlags(wide).Proportion(1));
        all->Add(Options(), wide);
        all->Add(Incomplete(), wide);
        all->Add(Buttons(), wide);
        SetSizerAndFit(all);
        CentreOnParent();
        wxArrayString names;
        for (const std::string& scan : scans) names.push_back(wxString::FromUTF8(scan));
        AddScans(names);
        (names.empty() ? static_cast<wxWindow*>(addScans_) : prepare_)->SetFocus();
    }

    PrepareJob Job() const {
        PrepareJob job;
        for (const wxString& scan : scans_->GetStrings()) job.scans.push_back(scan.utf8_string());
        job.target = Target().utf8_string();
        job.tree = trees[static_cast<std::size_t>(tree_->GetSelection())];
        job.unit = unit_->GetStringSelection().utf8_string();
        job.maxPoints = static_cast<unsigned long long>(maxPoints_->GetValue());
        job.allowIncomplete = incomplete_->GetValue();
        return job;
    }

private:
    wxSizer* Scans() {
        scans_ = new wxListBox(this, wxID_ANY, wxDefaultPosition, FromDIP(wxSize(480, 130)), {},
                               wxLB_EXTENDED | wxLB_HSCROLL);
        addScans_ = AddButton("Add ...", "dialog/Add scans", [this] { AskForScans(); });
        removeScans_ = AddButton("Remove", "dialog/Remove scans", [this] { RemoveScans(); });
        scans_->Bind(wxEVT_LISTBOX, [this](wxCommandEvent&) { ShowState(); });
        auto* const buttons = new wxBoxSizer(wxVERTICAL);
        buttons->Add(addScans_, wxSizerFlags().Expand());
        buttons->Add(removeScans_, wxSizerFlags().Expand().Border(wxTOP, FromDIP(gap)));
        auto* const row = new wxBoxSizer(wxHORIZONTAL);
        row->Add(scans_, wxSizerFlags(1).Expand());
        row->Add(buttons, wxSizerFlags().Border(wxLEFT, FromDIP(gap)));
        auto* const box = new wxBoxSizer(wxVERTICAL);
        box->Add(Label("Scans, all of one format (LAS, PTS, PTX or other text):"),
                 wxSizerFlags().Border(wxBOTTOM, FromDIP(gap / 2)));
        box->Add(row, wxSizerFlags(1).Expand());
        return box;
    }

    wxSizer* Options() {
        auto* const grid = new wxFlexGridSizer(2, FromDIP(wxSize(gap, gap)));
        grid->AddGrowableCol(1);
        const auto add = [&](const char* label, auto* value) {
            grid->Add(Label(label), wxSizerFlags().CentreVertical());
            grid->Add(value, wxSizerFlags().Expand());
        };
        add("Write to:", TargetRow());
        add("Unit of coordinates:", UnitChoice());
        add("Kind of tree:", TreeChoice());
        maxPoints_ =
            new wxSpinCtrl(this, wxID_ANY, {}, wxDefaultPosition, wxDefaultSize, wxSP_ARROW_KEYS, 1,
                           mostPoints, static_cast<int>(PrepareJob().maxPoints));
        maxPoints_->SetName("dialog/Max points");
        maxPoints_->SetToolTip("A box of the tree with this many points is split (--max-points)");
        add("Points in a box:", maxPoints_);
        return grid;
    }

    wxSizer* TargetRow() {
        target_ = new wxTextCtrl(this, wxID_ANY);
        target_->SetName("dialog/Target");
        // What the user has written stays.
        target_->Bind(wxEVT_TEXT, [this](wxCommandEvent&) {
            isOwnTarget_ = true;
            ShowState();
        });
        auto* const row = new wxBoxSizer(wxHORIZONTAL);
        row->Add(target_, wxSizerFlags(1).CentreVertical());
        row->Add(AddButton("Browse ...", "dialog/Browse", [this] { AskForTarget(); }),
                 wxSizerFlags().Border(wxLEFT, FromDIP(gap)));
        return row;
    }

    wxChoice* UnitChoice() {
        unit_ = new wxChoice(this, wxID_ANY);
        unit_->SetName("dialog/Unit");
        for (const std::string& unit : queue_.Units()) unit_->Append(wxString::FromUTF8(unit));
        unit_->SetSelection(0);
        unit_->SetToolTip("auto: what the scans name, else metres. No coordinate is converted.");
        return unit_;
    }

    wxChoice* TreeChoice() {
        tree_ = new wxChoice(this, wxID_ANY);
        tree_->SetName("dialog/Tree");
        for (const char* label : treeLabels) tree_->Append(label);
        tree_->SetSelection(0);
        return tree_;
    }

    wxCheckBox* Incomplete() {
        incomplete_ = new wxCheckBox(this, wxID_ANY,
                                     "Go on when points are missing in a scan or cannot be read");
        incomplete_->SetName("dialog/Incomplete");
        incomplete_->SetToolTip(
            "Such points are left out, and a warning counts them "
            "(--allow-incomplete)");
        return incomplete_;
    }

    wxSizer* Buttons() {
        prepare_ = AddButton("Prepare", "dialog/Prepare", [this] { OnPrepare(); });
        prepare_->SetDefault();
        auto* const cancel = new wxButton(this, wxID_CANCEL);
        cancel->SetName("dialog/Cancel");
        auto* const row = new wxBoxSizer(wxHORIZONTAL);
        row->AddStretchSpacer();
        row->Add(cancel);
        row->Add(prepare_, wxSizerFlags().Border(wxLEFT, FromDIP(gap)));
        return row;
    }

    wxStaticText* Label(const char* text) { return new wxStaticText(this, wxID_ANY, text); }

    template <class Act>
    wxButton* AddButton(const char* label, const char* name, const Act& act) {
        auto* const button = new wxButton(this, wxID_ANY, label);
        button->SetName(name);
        button->Bind(wxEVT_BUTTON, [act](wxCommandEvent&) { act(); });
        return button;
    }

    void AskForScans() {
        wxFileDialog dialog(this, "Scans", {}, {},
                            "Scans (LAS, PTS, PTX, text)|" + scanPatterns() + "|All files|*",
                            wxFD_OPEN | wxFD_FILE_MUST_EXIST | wxFD_MULTIPLE);
        if (dialog.ShowModal() != wxID_OK) return;
        wxArrayString paths;
        dialog.GetPaths(paths);
        AddScans(paths);
    }

    void AddScans(const wxArrayString& paths) {
        for (const wxString& path : paths)
            if (scans_->FindString(path, true) == wxNOT_FOUND) scans_->Append(path);
        ProposeTarget();
        ShowState();
    }

    void RemoveScans() {
        wxArrayInt chosen;
        scans_->GetSelections(chosen);
        std::sort(chosen.begin(), chosen.end());
        while (!chosen.empty()) {
            scans_->Delete(static_cast<unsigned>(chosen.back()));
            chosen.pop_back();
        }
        ProposeTarget();
        ShowState();
    }

    void ProposeTarget() {
        if (isOwnTarget_) return;
        const std::string target =
            scans_->IsEmpty() ? "" : PrepareJob::TargetFor(scans_->GetString(0).utf8_string());
        target_->ChangeValue(wxString::FromUTF8(target));
    }

    void AskForTarget() {
        const wxFileName old(Target());
        wxFileDialog dialog(this, "Point tree file to write", old.GetPath(), old.GetFullName(),
                            "Point tree files (*.vpt)|*.vpt|All files|*", wxFD_SAVE);
        if (dialog.ShowModal() == wxID_OK) target_->SetValue(dialog.GetPath());
    }

    /// The tree file as an absolute path that ends in .vpt; a bare name lies beside the first scan.
    wxString Target() const {
        wxFileName target(target_->GetValue());
        if (!scans_->IsEmpty()) target.MakeAbsolute(wxFileName(scans_->GetString(0)).GetPath());
        // A name that is nothing but the extension counts as one with it, too.
        const wxString extension = wxString(".") + treeExtension;
        if (!target.GetFullName().Lower().EndsWith(extension))
            target.SetFullName(target.GetFullName() + extension);
        return target.GetFullPath();
    }

    void ShowState() {
        wxArrayInt chosen;
        removeScans_->Enable(scans_->GetSelections(chosen) > 0);
        const wxString target = target_->GetValue();
        prepare_->Enable(!scans_->IsEmpty() && !target.empty() && !target.EndsWith("/"));
    }

    void OnPrepare() {
        const wxString target = Target();
        if (queue_.IsTarget(target.utf8_string())) {
            Say("Another preparation in the list writes this file already. Choose another name.");
            return;
        }
        if (wxFileName::DirExists(target)) {
            Say("There is a folder of this name. Choose another name.");
            return;
        }
        if (!wxFileName::FileExists(target) || WantsReplaced(target)) EndModal(wxID_OK);
    }

    void Say(const char* sentence) { wxMessageBox(sentence, GetTitle(), wxOK, this); }

    bool WantsReplaced(const wxString& target) {
        const wxString name = wxFileName(target).GetFullName();
        wxMessageDialog question(this, "There is a file " + name + " already. Replace it?",
                                 "Replace file", wxYES_NO | wxNO_DEFAULT | wxICON_WARNING);
        question.SetYesNoLabels("Replace", "Keep it");
        return question.ShowModal() == wxID_YES;
    }

    PrepareQueue& queue_;
    wxListBox* scans_ = nullptr;
    wxButton* addScans_ = nullptr;
    wxButton* removeScans_ = nullptr;
    wxTextCtrl* target_ = nullptr;
    wxChoice* unit_ = nullptr;
    wxChoice* tree_ = nullptr;
    wxSpinCtrl* maxPoints_ = nullptr;
    wxCheckBox* incomplete_ = nullptr;
    wxButton* prepare_ = nullptr;
    /// Whether the target is the user's and no proposal.
    bool isOwnTarget_ = false;
};

}  // namespace

std::optional<PrepareJob> askForPrepareJob(wxWindow* parent, PrepareQueue& queue,
                                           const std::vector<std::string>& scans) {
    PrepareDialog dialog(parent, queue, scans);
    if (dialog.ShowModal() != wxID_OK) return std::nullopt;
    return dialog.Job();
}

}  // namespace vpc::viewer
