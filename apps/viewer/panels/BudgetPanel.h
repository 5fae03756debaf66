#pragma once

#include <functional>

#include <wx/panel.h>
#include <wx/timer.h>

class wxSlider;
class wxStaticText;

namespace vpc::viewer {

/// How many points are shown at most, as a slider. Its name for tests is "budget".
class BudgetPanel : public wxPanel {
public:
    BudgetPanel(wxWindow* parent, std::function<void(unsigned long long)> change);

    void ShowBudget(unsigned long long budget);
    /// Whether the last move of the slider has been told.
    bool IsIdle() const { return !settle_.IsRunning(); }

private:
    void ShowText(unsigned long long budget);

    std::function<void(unsigned long long)> change_;
    wxStaticText* text_;
    wxSlider* slider_;
    /// While the slider moves, the engine is not asked at every step.
    wxTimer settle_;
};

}  // namespace vpc::viewer
