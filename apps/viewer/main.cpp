#include <array>

#include <wx/app.h>
#include <wx/init.h>

#include "viewer/window/CommandLine.h"
#include "viewer/window/ViewerApp.h"

int main(int argc, char** argv) {
    try {
        // Before wxWidgets looks for a display, which help and version do without.
        wxApp::SetInstance(new vpc::viewer::ViewerApp(vpc::viewer::CommandLine::Parse(argc, argv)));
    } catch (const vpc::viewer::CommandLine::Ended& ended) {
        return ended.Status();
    }
    // The options are read: wxWidgets gets the program's name alone.
    int count = 1;
    std::array<char*, 2> arguments{argv[0], nullptr};
    return wxEntry(count, arguments.data());
}
