#include "core/util/StringTools.h"

#include <wx/tokenzr.h>

#include "platform/OdRxSystemServices.h"

wxString StringTools::createGUID() {
    return FromOdString(odrxSystemServices()->createGuid());
}

std::vector<wxString> StringTools::Split(const wxString& text, const wxString& delimiters) {
    std::vector<wxString> tokens;
    wxStringTokenizer tokenizer(text, delimiters);
    while (tokenizer.HasMoreTokens()) tokens.push_back(tokenizer.GetNextToken());
    return tokens;
}

wxString StringTools::ReplaceFileExtension(const wxString& path, const wxString& extension) {
    const std::size_t separator = path.rfind('/');
    const std::size_t nameStart = separator == wxString::npos ? 0 : separator + 1;
    const std::size_t dot = path.rfind('.');
    // A dot at the start of a name hides the file and begins no extension.
    const bool hasExtension = dot != wxString::npos && dot > nameStart;
    const wxString stem = hasExtension ? path.substr(0, dot) : path;
    return extension.empty() ? stem : stem + "." + extension;
}

wxString StringTools::FromOdString(const OdString& text) {
    return {text.c_str()};
}

OdString StringTools::ToOdString(const wxString& text) {
    return {text.wc_str()};
}
