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

/// A file's name in a sentence: names may be no UTF-8.
inline std::string showableText(const std::string& fileName) {
    return fromHostText(toHostText(fileName));
}

}  // namespace vpc::viewer
