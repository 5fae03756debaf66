#pragma once

#include <string>

#include <wx/bmpbndl.h>
#include <wx/colour.h>

namespace vpc::viewer {

/// The picture of a command, drawn in lines of a colour; an empty one where it has none.
wxBitmapBundle iconOf(const std::string& command, const wxColour& ink);

}  // namespace vpc::viewer
