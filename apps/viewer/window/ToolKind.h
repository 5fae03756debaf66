#pragma once

namespace vpc::viewer {

/// What the mouse does in the view beside navigating.
enum class ToolKind {
    Navigate,
    Walk,
    Pick,
    MoveSection,
    SectionThroughPicks,
    ClipBoxInside,
    ClipBoxOutside,
    ClipPolygonInside,
    ClipPolygonOutside,
};

/// As the report names it.
const char* nameOf(ToolKind kind);

}  // namespace vpc::viewer
