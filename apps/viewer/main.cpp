#include <array>
#include <clocale>
#include <cstdlib>

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
    // wxWidgets reads names of files and variables by the locale; they may hold any Unicode, even
    // where the environment names none.
    std::setlocale(LC_ALL, "");
    if (MB_CUR_MAX == 1) std::setlocale(LC_CTYPE, "C.UTF-8");
    // The options are read: wxWidgets gets the program's name alone.
    int count = 1;
    std::array<char*, 2> arguments{argv[0], nullptr};
    return wxEntry(count, arguments.data());
}
