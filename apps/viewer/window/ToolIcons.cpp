#include "viewer/window/ToolIcons.h"

#include <map>

namespace vpc::viewer {

namespace {

constexpr int side = 22;

/// Lines and circles in a square of 24, without colours.
const std::map<std::string, const char*>& drawings() {
    static const std::map<std::string, const char*> all{
        {"open", "<path d='M3 19V6h6l2 2h8v3M3 19l3-8h16l-3 8z'/>"},
        {"prepare", "<path d='M12 3v10M8 9l4 4 4-4M4 15v5h16v-5'/>"},
        {"save", "<path d='M4 4h13l3 3v13H4zM8 4v5h7V4M7 20v-7h10v7'/>"},
        {"screenshot", "<path d='M3 8h4l2-3h6l2 3h4v11H3z'/><circle cx='12' cy='13' r='3.5'/>"},
        {"undo", "<path d='M9 5L4 10l5 5M4 10h9a6 5 0 0 1 0 10h-3'/>"},
        {"redo", "<path d='M15 5l5 5-5 5M20 10h-9a6 5 0 0 0 0 10h3'/>"},
        {"fit",
         "<path d='M4 9V4h5M15 4h5v5M20 15v5h-5M9 20H4v-5'/><circle cx='12' cy='12' r='3'/>"},
        {"back", "<path d='M11 5l-7 7 7 7M4 12h16'/>"},
        {"perspective", "<path d='M3 6l11 3v9L3 21zM14 9l7-3M14 18l7-2M21 6v10'/>"},
        {"navigate",
         "<path d='M20 12a8 8 0 1 1-3-6.2M17.5 2v4.2h-4.2'/><circle cx='12' cy='12' r='1.5'/>"},
        {"walk",
         "<circle cx='13' cy='4.5' r='2'/><path d='M12 8l-1 6 4 3 1 4M11 14l-2 3-3 4M12 8l-4 "
         "3v3M12 9l4 3h3'/>"},
        {"pick", "<circle cx='12' cy='12' r='5'/><path d='M12 2v6M12 16v6M2 12h6M16 12h6'/>"},
        {"section-move", "<path d='M4 8l8-4 8 4-8 4zM12 14v7M9 18l3 3 3-3'/>"},
        {"section-x", "<path d='M9 7l6-4v14l-6 4zM2 12h7M15 12h7'/>"},
        {"section-y", "<path d='M5 5h14v14H5zM12 1v7M12 16v7'/>"},
        {"section-z", "<path d='M3 13l6-4h12l-6 4zM12 2v7M12 15v7'/>"},
        {"section-picks",
         "<path d='M5 18L12 5l8 11z'/><circle cx='5' cy='18' r='2'/><circle cx='12' cy='5' "
         "r='2'/><circle cx='20' cy='16' r='2'/>"},
        {"clip-box", "<path d='M6 2v16h16M2 6h16v16'/>"},
        {"clip-box-outside", "<path d='M4 4h16v16H4zM8 8l8 8M16 8l-8 8'/>"},
        {"clip-polygon", "<path d='M4 9l8-6 9 7-4 10-11-1z'/>"},
        {"clip-polygon-outside", "<path d='M4 9l8-6 9 7-4 10-11-1zM9 9l6 6M15 9l-6 6'/>"},
    };
    return all;
}

}  // namespace

wxBitmapBundle iconOf(const std::string& command, const wxColour& ink) {
    const auto found = drawings().find(command);
    if (found == drawings().end()) return {};
    const std::string svg =
        "<svg xmlns='http://www.w3.org/2000/svg' width='24' height='24' viewBox='0 0 24 24'><g "
        "fill='none' stroke='" +
        ink.GetAsString(wxC2S_HTML_SYNTAX).ToStdString() +
        "' stroke-width='1.7' stroke-linecap='round' stroke-linejoin='round'>" + found->second +
        "</g></svg>";
    return wxBitmapBundle::FromSVG(svg.c_str(), wxSize(side, side));
}

}  // namespace vpc::viewer
