#pragma once

#include <memory>
#include <string>
#include <vector>

#include <wx/gdicmn.h>

#include "viewer/document/ViewStyle.h"

class wxFileConfig;

namespace vpc::viewer {

/// What the program remembers from run to run, in the user's configuration folder.
class Preferences {
public:
    Preferences();
    ~Preferences();

    ViewStyle Style() const;
    /// Remembers what the user has changed; the rest may come from a session.
    void SetStyle(const ViewStyle& from, const ViewStyle& to);
    bool LevelHorizon() const;
    void SetLevelHorizon(bool level);
    /// Empty where the window has never been closed.
    wxRect WindowPlace() const;
    void SetWindowPlace(const wxRect& place);

    /// The latest first, at most ten.
    std::vector<std::string> RecentFiles() const;
    void AddRecentFile(const std::string& file);

private:
    void Flush();

    std::unique_ptr<wxFileConfig> config_;
};

}  // namespace vpc::viewer
