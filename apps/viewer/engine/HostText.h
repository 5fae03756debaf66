#pragma once

#include <string>

#include <wx/string.h>

#include "platform/OdString.h"

namespace vpc::viewer {

/// Texts are UTF-8 in the viewer and wide at the host.
inline OdString toHostText(const std::string& text) {
    return {text.c_str()};
}

inline std::string fromHostText(const OdString& text) {
    return wxString(text.c_str()).utf8_string();
}

}  // namespace vpc::viewer
