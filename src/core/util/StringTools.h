#pragma once

#include <vector>

#include <wx/string.h>

#include "platform/OdString.h"

/// Tools for wide strings.
class StringTools {
public:
    /// A new globally unique identifier from the host, fit for a file name.
    static wxString createGUID();
    /// Splits `text` at any of the delimiter characters. Empty tokens are skipped if every
    /// delimiter is white space. Otherwise they are returned, except at the end of the text.
    static std::vector<wxString> Split(const wxString& text, const wxString& delimiters);
    /// `path` with the extension of its file name replaced by `extension` (without the dot), or
    /// added where it has none.
    static wxString ReplaceFileExtension(const wxString& path, const wxString& extension);

    static wxString FromOdString(const OdString& text);
    static OdString ToOdString(const wxString& text);
};
