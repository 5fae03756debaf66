#include "viewer/window/FileDialogs.h"

#include <wx/filedlg.h>

#include "viewer/panels/Text.h"

namespace vpc::viewer {

namespace {

constexpr const char* all = "|All files|*";

std::string askForOne(wxWindow* parent, const wxString& title, const wxString& pattern, long style,
                      const wxString& proposed) {
    wxFileDialog dialog(parent, title, wxString(), proposed, pattern, style);
    if (dialog.ShowModal() != wxID_OK) return {};
    return toUtf8(dialog.GetPath());
}

std::vector<std::string> askForSeveral(wxWindow* parent, const wxString& title,
                                       const wxString& pattern) {
    wxFileDialog dialog(parent, title, wxString(), wxString(), pattern,
                        wxFD_OPEN | wxFD_FILE_MUST_EXIST | wxFD_MULTIPLE);
    std::vector<std::string> files;
    if (dialog.ShowModal() != wxID_OK) return files;
    wxArrayString paths;
    dialog.GetPaths(paths);
    for (const wxString& path : paths) files.push_back(toUtf8(path));
    return files;
}

std::string withExtension(std::string file, const char* extension) {
    if (!file.empty() && !fromUtf8(file).Lower().EndsWith(extension)) file += extension;
    return file;
}

}  // namespace

std::vector<std::string> askForFiles(wxWindow* parent) {
    return askForSeveral(parent, "Open",
                         wxString("Point trees and sessions|*.vpt;*.vpcview") + all);
}

std::vector<std::string> askForScans(wxWindow* parent) {
    return askForSeveral(parent, "Add scans",
                         wxString("Scans|*.las;*.pts;*.ptx;*.ply;*.LAS;*.PTS;*.PTX;*.PLY") + all);
}

std::string askForSession(wxWindow* parent) {
    return askForOne(parent, "Open session", wxString("Sessions|*.vpcview") + all,
                     wxFD_OPEN | wxFD_FILE_MUST_EXIST, wxString());
}

std::string askForSessionTarget(wxWindow* parent, const std::string& proposed) {
    return withExtension(askForOne(parent, "Save session", "Sessions|*.vpcview",
                                   wxFD_SAVE | wxFD_OVERWRITE_PROMPT, fromUtf8(proposed)),
                         ".vpcview");
}

std::string askForPictureTarget(wxWindow* parent) {
    return withExtension(askForOne(parent, "Save picture", "PNG pictures|*.png",
                                   wxFD_SAVE | wxFD_OVERWRITE_PROMPT, "view.png"),
                         ".png");
}

}  // namespace vpc::viewer
