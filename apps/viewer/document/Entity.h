#pragma once

#include <string>

#include "viewer/document/Placement.h"

namespace vpc::viewer {

/// What the points' colours tell, as the host's entity counts. It takes other numbers, too: they
/// show the scan's colours.
enum HostStylization : int { Host_ScanColours = 1, Host_Elevation = 4, Host_Intensity = 5 };

/// A point tree file in the drawing. Texts are UTF-8.
struct Entity {
    /// Names the entity as long as the program runs; 1 and up, never used twice.
    int id = 0;
    /// The tree file, as an absolute path.
    std::string file;
    /// As the list shows it.
    std::string name;
    bool visible = true;
    Placement placement;
    /// A HostStylization.
    int stylization = Host_ScanColours;
    /// The colour scheme's GUID, as the host's entity holds it; empty for the scan's colours.
    std::string colourScheme;
    bool cropped = true;
    /// The palette and the tools leave a locked entity where it is.
    bool locked = false;

    bool operator==(const Entity&) const = default;
};

}  // namespace vpc::viewer
