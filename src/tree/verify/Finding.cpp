#include "tree/verify/Finding.h"

#include <wx/translation.h>

namespace vpc {

wxString FindingKindName(FindingKind kind) {
    switch (kind) {
        case FindingKind::File:
            return _("file");
        case FindingKind::Header:
            return _("header");
        case FindingKind::Record:
            return _("record");
        case FindingKind::Position:
            return _("position");
        case FindingKind::Box:
            return _("box");
        case FindingKind::Path:
            return _("path");
        case FindingKind::Grid:
            return _("grid");
        case FindingKind::ParentLink:
            return _("parent link");
        case FindingKind::ChildLink:
            return _("child link");
        case FindingKind::PointCount:
            return _("point count");
        case FindingKind::PointBlock:
            return _("point block");
        case FindingKind::Point:
            return _("point");
    }
    return {};
}

}  // namespace vpc
