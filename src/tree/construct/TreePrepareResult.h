#pragma once

#include <wx/string.h>

/// The result of a preprocessing run.
struct TreePrepareResult {
    /// True only when the point tree file was written whole.
    bool success = false;
    /// On failure, what went wrong, with the system's reason where there is one, and in further
    /// lines the notes that came before. On success the notes alone: a sentence a line, with the
    /// scan's name, for whatever in a scan did not become the points that it should. Normally there
    /// are none; then every byte of every scan was accounted for.
    wxString message;
    /// How long the run took, as "00h:03m:07s.250ms"; empty on most failures.
    wxString elapsedTime;
};
