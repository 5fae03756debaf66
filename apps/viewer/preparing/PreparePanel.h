#pragma once

#include <memory>
#include <vector>

#include <wx/panel.h>
#include <wx/scrolwin.h>

namespace vpc::viewer {

class PrepareQueue;

/// The queue in the main window: a line for each job, with how far it has come and a button. Shown
/// as long as there are jobs. The buttons have names for tests: "preparing/0/cancel" while the
/// first job waits or runs, then "preparing/0/remove".
class PreparePanel : public wxScrolled<wxPanel> {
public:
    PreparePanel(wxWindow* parent, PrepareQueue& queue);
    ~PreparePanel() override;

    /// Shows the queue as it is now; to be called whenever it has changed. Shows or hides the panel
    /// and has its parent laid out where that changes its height.
    void ShowJobs();

private:
    class Row;

    /// Makes and removes rows, so that each job has one.
    bool MatchRows();
    void FitHeight();

    PrepareQueue& queue_;
    std::vector<Row*> rows_;
};

}  // namespace vpc::viewer
