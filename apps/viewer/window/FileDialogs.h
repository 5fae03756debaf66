#pragma once

#include <string>
#include <vector>

#include <wx/string.h>

class wxWindow;

namespace vpc::viewer {

/// Files that the user chooses, as absolute paths in UTF-8; empty where the user cancels.
std::vector<std::string> askForFiles(wxWindow* parent);
std::vector<std::string> askForScans(wxWindow* parent);
std::string askForSession(wxWindow* parent);
/// \param proposed the name that stands in the field at first
std::string askForSessionTarget(wxWindow* parent, const std::string& proposed);
std::string askForPictureTarget(wxWindow* parent);

}  // namespace vpc::viewer
