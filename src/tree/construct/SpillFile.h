#pragma once

#include <map>
#include <string>
#include <vector>

#include <sys/uio.h>
#include <wx/string.h>

namespace vpc {

/// One temporary file for the points of all nodes, in pieces that are handed out and taken back.
///
/// Once open, the file has no name any more, so that it disappears with the process, however that
/// ends.
class SpillFile {
public:
    /// A run of bytes in the file.
    struct Piece {
        unsigned long long position = 0;
        unsigned long long size = 0;
    };

    /// Creates the file. This, Write and Read throw vpc::IoError when they fail.
    explicit SpillFile(const std::string& path);
    ~SpillFile();
    SpillFile(const SpillFile&) = delete;
    SpillFile& operator=(const SpillFile&) = delete;

    /// Writes the parts one after the other into a piece of their total size.
    [[nodiscard]] Piece Write(std::vector<iovec>& parts);
    /// Reads `size` bytes from `position`.
    void Read(unsigned long long position, char* data, unsigned long long size) const;
    /// Takes a piece back, to be handed out again.
    void Free(const Piece& piece);

private:
    Piece Allocate(unsigned long long size);
    [[noreturn]] void Fail(const wxString& problem, int systemReason) const;

    std::string path_;
    int descriptor_;
    unsigned long long end_ = 0;
    /// Free pieces by size.
    std::multimap<unsigned long long, unsigned long long> free_;
};

}  // namespace vpc
