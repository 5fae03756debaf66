#pragma once

#include <functional>
#include <string>
#include <vector>

#include "viewer/document/Drawing.h"
#include "viewer/panels/SidePanel.h"

namespace vpc::viewer {

/// The sections and clips of the drawing: switched, turned around, removed. Names for tests:
/// "section/0/enabled", "section/0/flip", "section/0/remove", and the same with "clip".
class CutsPanel : public SidePanel {
public:
    /// Gets the changed drawing, and what was done.
    using Change = std::function<void(const std::string& label, const Drawing& drawing)>;

    CutsPanel(wxWindow* parent, Change change);

    void ShowCuts(const Drawing& drawing);

private:
    /// A function that edits one cut and hands the changed drawing on.
    template <class Cut>
    auto ChangeOf(std::vector<Cut> Drawing::*cuts, std::size_t index);
    void AddSection(std::size_t index);
    void AddClip(std::size_t index);
    /// Adds a row, and gives its parts what they do.
    void AddRow(const wxString& name, const std::string& text, bool isEnabled,
                std::function<void(bool)> enable, std::function<void()> flip,
                std::function<void()> remove);

    Change change_;
    Drawing drawing_;
};

}  // namespace vpc::viewer
