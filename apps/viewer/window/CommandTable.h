#pragma once

#include <string>
#include <vector>

class wxMenu;

namespace vpc::viewer {

class Commands;
class MainFrame;

/// What the user can do, menu by menu.
/// \return the menu for the recent files
wxMenu& addCommands(Commands& commands, MainFrame& frame);
/// The commands that have buttons, with an empty name for a gap.
std::vector<std::string> toolNames();

}  // namespace vpc::viewer
