#pragma once

#include <wx/string.h>

/// What a preprocessing run gives back.
struct TreePrepareResult {
    /// True only when the point tree file was written whole.
    bool success = false;
    /// On failure what went wrong, with the system's reason where there is one, and in further
    /// lines what was worth knowing before; on success that alone, normally nothing.
    wxString message;
    /// How long the run took, as "00h:03m:07s.250ms"; empty on most failures.
    wxString elapsedTime;
};
