#include "viewer/window/HelpPage.h"

#include <vector>

#include <wx/aboutdlg.h>
#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/generic/aboutdlgg.h>
#include <wx/scrolwin.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

namespace vpc::viewer {

namespace {

struct Line {
    const char* what;
    const char* does;
};

struct Chapter {
    const char* title;
    std::vector<Line> lines;
};

const std::vector<Chapter>& chapters() {
    static const std::vector<Chapter> all{
        {"Mouse",
         {{"Left drag", "turn around the point under the cursor"},
          {"Middle drag, Shift+left drag", "slide"},
          {"Wheel, right drag", "zoom to the point under the cursor"},
          {"Ctrl+wheel", "larger or smaller points"},
          {"Shift+wheel", "turn to the left or right"},
          {"Double click", "keep turning around this point; over empty space: no longer"}}},
        {"Touchpad",
         {{"Two fingers up or down", "zoom to the point under the cursor"},
          {"Two fingers sideways", "turn"},
          {"Pinch", "zoom"}}},
        {"Keys",
         {{"Arrows", "turn; with Shift: slide"},
          {"+ and -, Page Up and Page Down", "zoom"},
          {"F, Home", "show everything"},
          {"1 to 7", "top, bottom, front, back, left, right, from a corner"},
          {"P", "perspective or parallel"},
          {"Alt+Left, Alt+Right", "view before, view after"},
          {"Ctrl+Z, Ctrl+Shift+Z", "undo and redo sections, clips and properties"},
          {"Escape", "give up what a tool has begun; then put the tool away"}}},
        {"Tools (turning, sliding and zooming go on working)",
         {{"Pick", "click a point; a second one measures; Ctrl+C copies"},
          {"Section", "drag the plane's handle or outline along its arrow"},
          {"Section through points", "click three points"},
          {"Clip box", "drag a rectangle"},
          {"Clip polygon",
           "click corners; Enter or a double click closes, Backspace takes one "
           "back"}}},
        {"Walking",
         {{"W A S D, up and down", "walk; with Shift: faster"},
          {"Q and E", "down and up"},
          {"Left drag, left and right", "look around"},
          {"+ and -", "longer and shorter steps"}}},
    };
    return all;
}

void addChapter(wxWindow& page, wxSizer& column, const Chapter& chapter) {
    auto* title = new wxStaticText(&page, wxID_ANY, chapter.title);  // the page's
    title->SetFont(title->GetFont().Bold());
    column.Add(title, wxSizerFlags().Border(wxTOP | wxBOTTOM, page.FromDIP(8)));
    auto* table = new wxFlexGridSizer(2, page.FromDIP(wxSize(24, 4)));  // the column's
    for (const Line& line : chapter.lines) {
        auto* what = new wxStaticText(&page, wxID_ANY, line.what);
        // So that all chapters have their columns one below the other.
        what->SetMinSize(wxSize(page.FromDIP(230), -1));
        table->Add(what);
        table->Add(new wxStaticText(&page, wxID_ANY, line.does));
    }
    column.Add(table, wxSizerFlags().Border(wxLEFT, page.FromDIP(12)));
}

}  // namespace

void showHelpPage(wxWindow* parent) {
    wxDialog dialog(parent, wxID_ANY, "Mouse, touchpad and keys", wxDefaultPosition, wxDefaultSize,
                    wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER);
    auto* page = new wxScrolledWindow(&dialog, wxID_ANY);  // the dialog's
    page->SetScrollRate(0, dialog.FromDIP(10));
    auto* column = new wxBoxSizer(wxVERTICAL);
    for (const Chapter& chapter : chapters()) addChapter(*page, *column, chapter);
    page->SetSizer(column);
    page->SetMinSize(column->GetMinSize() + dialog.FromDIP(wxSize(24, 0)));
    auto* whole = new wxBoxSizer(wxVERTICAL);
    whole->Add(page, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT, dialog.FromDIP(16)));
    whole->Add(dialog.CreateButtonSizer(wxOK), wxSizerFlags().Expand().Border(wxALL, 12));
    dialog.SetSizerAndFit(whole);
    if (wxWindow* close = dialog.FindWindow(wxID_OK)) close->SetName("dialog/OK");
    dialog.CentreOnParent();
    dialog.ShowModal();
}

void showAbout(wxWindow* parent) {
    wxAboutDialogInfo info;
    info.SetName("vpc-viewer");
    info.SetVersion(VPC_PROGRAM_VERSION);
    info.SetDescription("Shows point clouds: turns, cuts, picks, measures and colours them.");
    wxGenericAboutBox(info, parent);
}

}  // namespace vpc::viewer
