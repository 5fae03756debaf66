#include "platform/OdString.h"

#include <wx/string.h>

OdString::OdString(const char* text) {
    if (text == nullptr) return;
    wxString decoded = wxString::FromUTF8(text);
    if (decoded.empty()) decoded = wxString(text, wxConvISO8859_1);
    text_ = decoded.ToStdWstring();
}
