#pragma once

#include <wx/string.h>

namespace vpc {

/// How many points a LAS file holds, by its header and by its size.
struct LasPointCount {
    /// Reads the header of `file`, which has `bytes` bytes.
    LasPointCount(const wxString& file, unsigned long long bytes);

    /// Why the header cannot be used, in translated words that may follow the file's name; empty
    /// where it can.
    wxString fault;
    /// Points that the header claims.
    unsigned long long claimed = 0;
    /// Those of them for which the file is long enough.
    unsigned long long held = 0;
};

}  // namespace vpc
