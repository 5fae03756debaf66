#pragma once

#include <wx/string.h>

namespace vpc {

/// A file that becomes visible only when it is whole: it is written under a temporary name beside
/// its target and takes the target's place at the end.
///
/// Removes the temporary file when it goes without a commit.
class ReplacementFile {
public:
    /// \param target     the file to create or replace; a link is followed
    /// \param uniqueName what the temporary file's name begins with
    ReplacementFile(const wxString& target, const wxString& uniqueName);
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    /// Where to write.
    const wxString& TemporaryName() const { return temporary_; }
    /// Puts the finished file in the target's place; false when that fails.
    bool Commit();

private:
    wxString target_;
    wxString temporary_;
    bool committed_ = false;
};

}  // namespace vpc
