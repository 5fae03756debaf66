#pragma once

#include <memory>
#include <vector>

#include <wx/panel.h>

namespace vpc::viewer {

class PrepareQueue;

/// The queue in the main window: a line for each job, with how far it has come and a button. Shown
/// as long as there are jobs. The buttons have names for tests: "preparing/ID/cancel" and
/// "preparing/ID/remove".
class PreparePanel : public wxPanel {
public:
    PreparePanel(wxWindow* parent, PrepareQueue& queue);
    ~PreparePanel() override;

    /// Shows the queue as it is now; to be called whenever it has changed. Shows or hides the panel
    /// and then has its parent laid out.
    void ShowJobs();

private:
    class Row;

    PrepareQueue& queue_;
    std::vector<std::unique_ptr<Row>> rows_;
};

}  // namespace vpc::viewer
