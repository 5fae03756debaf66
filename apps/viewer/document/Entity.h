#pragma once

#include <string>

#include "viewer/document/Placement.h"

namespace vpc::viewer {

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
    /// As the host's entity counts: 1 the scan's colours, 4 elevation, 5 intensity.
    int stylization = 1;
    /// The colour scheme's GUID, as the host's entity holds it; empty for the scan's colours.
    std::string colourScheme;
    bool cropped = true;
    /// The palette and the tools leave a locked entity where it is.
    bool locked = false;

    bool operator==(const Entity&) const = default;
};

}  // namespace vpc::viewer
