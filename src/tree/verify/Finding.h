#pragma once

#include <functional>

#include <wx/string.h>

namespace vpc {

/// What a fault of a point tree file is about.
enum class FindingKind {
    File,        ///< the file as a whole: where it ends, whether it can be read
    Header,      ///< a value of the header
    Record,      ///< a value of a node record
    Position,    ///< a position in a node record
    Box,         ///< the box of a node
    Path,        ///< the path from the root to a node
    Grid,        ///< the grid of a node's children
    ParentLink,  ///< what a node says about its parent
    ChildLink,   ///< what a node says about its children
    PointCount,  ///< the number of points of a node
    PointBlock,  ///< a point block
    Point        ///< a point
};

/// One fault of a point tree file.
struct Finding {
    FindingKind kind = FindingKind::File;
    /// A sentence that names the node, if any, and the values that do not fit.
    wxString text;
};

/// Called with every finding as it turns up. An exception that it throws ends the check.
using FindingSink = std::function<void(const Finding&)>;

/// The kind in a word or two.
wxString FindingKindName(FindingKind kind);

}  // namespace vpc
