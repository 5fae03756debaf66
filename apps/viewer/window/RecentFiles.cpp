#include "viewer/window/RecentFiles.h"

#include <utility>

#include "viewer/panels/Text.h"

namespace vpc::viewer {

RecentFiles::RecentFiles(wxMenu& menu, std::function<void(const std::string&)> open)
    : menu_(menu), open_(std::move(open)) {
}

void RecentFiles::Show(const std::vector<std::string>& files) {
    while (menu_.GetMenuItemCount() > 0) menu_.Destroy(menu_.FindItemByPosition(0));
    for (const std::string& file : files) {
        wxString label = fromUtf8(file);
        label.Replace("&", "&&");
        const wxMenuItem* item = menu_.Append(wxID_ANY, label);
        menu_.Bind(
            wxEVT_MENU, [this, file](wxCommandEvent&) { open_(file); }, item->GetId());
    }
    if (files.empty()) menu_.Append(wxID_ANY, "None yet")->Enable(false);
}

}  // namespace vpc::viewer
