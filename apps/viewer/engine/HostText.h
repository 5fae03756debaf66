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

/// A name as sentences show it. Names of files may be no UTF-8.
inline std::string quoted(const std::string& name) {
    std::string text = "'";
    text += fromHostText(toHostText(name));
    text += "'";
    return text;
}

}  // namespace vpc::viewer
