#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <wx/string.h>

#include "core/util/FileHandle.h"
#include "core/util/TemporaryOwner.h"

namespace vpc {

/// A file that becomes visible only when it is whole: it is written under a temporary name beside
/// its target and takes the target's place at the end.
///
/// An older file survives everything up to then, a power cut included: where there is one, the new
/// file is on the disk before it takes the name. A new name has nothing to lose and is not synced.
///
/// The file is written with Write, or by other means under TemporaryName. Without a commit the
/// temporary file is removed; what a killed process leaves TemporaryOwner finds. Every failure
/// throws IoError, which names the target.
class ReplacementFile {
public:
    /// \param target the file to create or replace. A symbolic link is followed, also one to a name
    ///               that does not exist yet. Throws where something else than a regular file has
    ///               the name: only a regular file is ever replaced
    explicit ReplacementFile(const wxString& target);
    /// \param uniqueName what the temporary file's name has that no other has
    ReplacementFile(const wxString& target, const wxString& uniqueName);
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    /// The name that a file with this target gets: where the links lead that begin at `target`,
    /// whether or not there is a file at their end. Throws where they lead in a circle.
    static wxString FollowLinks(const wxString& target);

    /// The name under which the file is written.
    const wxString& TemporaryName() const { return temporary_; }

    /// Appends to the file, in large pieces.
    void Write(const char* data, std::size_t size) {
        if (buffer_.size() + size > bufferSize) Flush();
        buffer_.append(data, size);
    }
    void Write(std::string_view text) { Write(text.data(), text.size()); }
    /// Goes back to the start of what Write has written, so that a header can be written anew.
    void Rewind();
    /// Puts the finished file in the target's place.
    void Commit();

private:
    static constexpr std::size_t bufferSize = std::size_t{1} << 20;

    void Flush();
    void Close();
    /// Puts the temporary file's bytes on the disk.
    void Sync() const;
    [[noreturn]] void Fail() const;

    wxString target_;
    wxString temporary_;
    FileHandle file_;
    std::optional<TemporaryOwner> owner_;
    std::string buffer_;
    unsigned flushes_ = 0;
    bool committed_ = false;
};

}  // namespace vpc
