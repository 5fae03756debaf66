#pragma once

#include <functional>
#include <string>
#include <vector>

#include <wx/menu.h>

namespace vpc::viewer {

/// The menu of the files that were opened last.
class RecentFiles {
public:
    /// \param menu stays the menu bar's
    RecentFiles(wxMenu& menu, std::function<void(const std::string&)> open);

    void Show(const std::vector<std::string>& files);

private:
    wxMenu& menu_;
    std::function<void(const std::string&)> open_;
};

}  // namespace vpc::viewer
