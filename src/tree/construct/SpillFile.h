#pragma once

#include <string>
#include <vector>

#include <sys/uio.h>
#include <wx/string.h>

namespace vpc {

/// One temporary file for the points of all nodes, in pieces that are written once, one behind the
/// other. The disk gets the room of a piece back as soon as the piece is freed.
///
/// Once open, the file has no name any more, so that it disappears with the process, however that
/// ends.
class SpillFile {
public:
    /// Pieces begin at multiples of this, so that all of their room can be given back.
    static constexpr unsigned long long alignment = 4096;
    static constexpr unsigned long long Aligned(unsigned long long size) {
        return (size + alignment - 1) / alignment * alignment;
    }

    /// Whether Free gives room back in this folder, as far as a file of one page can tell. That
    /// file has no name, like all; where it cannot be made the answer is no.
    [[nodiscard]] static bool GivesRoomBack(const std::string& folder);

    /// Creates the file. This, Write and Read throw vpc::IoError when they fail.
    explicit SpillFile(const std::string& path);
    ~SpillFile();
    SpillFile(const SpillFile&) = delete;
    SpillFile& operator=(const SpillFile&) = delete;

    /// Sets `size` bytes of the file aside and returns where they begin. They take no room before
    /// they are written.
    [[nodiscard]] unsigned long long Reserve(unsigned long long size);
    /// Writes the parts one after the other from `position`.
    void Write(unsigned long long position, std::vector<iovec>& parts);
    /// Reads `size` bytes from `position`.
    void Read(unsigned long long position, char* data, unsigned long long size) const;
    /// Gives the room of `size` bytes from `position` back. Where the file system cannot do that,
    /// the file keeps its size until it is closed.
    void Free(unsigned long long position, unsigned long long size);
    /// Throws vpc::IoError for what the file gives back and nobody wrote.
    [[noreturn]] void FailDamaged() const;

private:
    [[noreturn]] void Fail(const wxString& problem, int systemReason) const;

    std::string path_;
    int descriptor_;
    unsigned long long end_ = 0;
    bool givesBack_ = true;
};

}  // namespace vpc
