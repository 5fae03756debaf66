#pragma once

#include <wx/string.h>
#include <wx/translation.h>

#include "tree/file/NodeRecord.h"

namespace vpc {

/// "node 17 of level 3", for findings.
inline wxString nodeName(unsigned long long level, unsigned long long index) {
    return wxString::Format(_("node %llu of level %llu"), index, level);
}
inline wxString nodeName(const NodeRecord& record) {
    return nodeName(record.level, record.index);
}

}  // namespace vpc
