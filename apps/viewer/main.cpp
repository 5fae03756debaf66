#include <wx/app.h>
#include <wx/frame.h>

namespace {

class ViewerApp : public wxApp {
public:
    bool OnInit() override {
        (new wxFrame(nullptr, wxID_ANY, "vpc-viewer"))->Show();  // wxWidgets deletes its windows
        return true;
    }
};

}  // namespace

wxIMPLEMENT_APP(ViewerApp);
