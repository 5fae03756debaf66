#include "viewer/window/ToolKind.h"

namespace vpc::viewer {

const char* nameOf(ToolKind kind) {
    switch (kind) {
        case ToolKind::Navigate:
            return "navigate";
        case ToolKind::Walk:
            return "walk";
        case ToolKind::Pick:
            return "pick";
        case ToolKind::MoveSection:
            return "section";
        case ToolKind::SectionThroughPicks:
            return "section-picks";
        case ToolKind::ClipBoxInside:
            return "clip-box";
        case ToolKind::ClipBoxOutside:
            return "clip-box-outside";
        case ToolKind::ClipPolygonInside:
            return "clip-polygon";
        case ToolKind::ClipPolygonOutside:
            return "clip-polygon-outside";
    }
    return "";
}

}  // namespace vpc::viewer
