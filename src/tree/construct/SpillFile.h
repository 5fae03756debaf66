#pragma once

#include <string>
#include <vector>

#include <wx/string.h>

namespace vpc {

/// One temporary file for the points of all nodes, in pieces that are written once. The disk gets
/// their room back after they are freed.
///
/// A system call gives a range back, and a disk may take its time for every one. So pieces that
/// will be freed at about the same time, those of one zone, lie together, and their room is given
/// back together.
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

    /// Of what the file takes, at most this share is freed and not given back yet.
    static constexpr unsigned long long mostWaitingShare = 8;
    /// Zones are numbered in the order in which their pieces will be freed.
    static constexpr unsigned zones = 128;

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
    [[nodiscard]] unsigned long long Reserve(unsigned long long size, unsigned zone);
    /// Writes `size` bytes to `position`.
    void Write(unsigned long long position, const char* data, unsigned long long size);
    /// Reads `size` bytes from `position`.
    void Read(unsigned long long position, char* data, unsigned long long size) const;
    /// Gives the room of a piece back, together with others. Where the file system cannot do that,
    /// the file keeps its size until it is closed.
    ///
    /// \param zone that of the piece: when another one follows, it may be done
    void Free(unsigned long long position, unsigned long long size, unsigned zone);
    /// The room that the file takes on the disk.
    unsigned long long BytesOnDisk() const { return bytesOnDisk_; }
    /// Throws vpc::IoError for what the file gives back and nobody wrote.
    [[noreturn]] void FailDamaged() const;

private:
    struct Range {
        unsigned long long begin = 0;
        unsigned long long end = 0;
    };
    /// Gives the room of what was freed back, where at least `smallest` bytes lie together.
    void GiveBack(unsigned long long smallest);
    void Punch(const Range& range);
    [[noreturn]] void Fail(const wxString& problem, int systemReason) const;

    std::string path_;
    int descriptor_;
    unsigned long long end_ = 0;
    unsigned long long reservedBytes_ = 0;
    bool givesBack_ = true;
    /// What is left of each zone's last stretch of the file.
    std::vector<Range> stretches_{zones};
    /// What is freed and still takes room.
    std::vector<Range> freed_;
    unsigned long long freedBytes_ = 0;
    /// Those of them that were freed since the last round.
    unsigned long long newlyFreedBytes_ = 0;
    unsigned lastFreedZone_ = 0;
    unsigned long long bytesOnDisk_ = 0;
};

}  // namespace vpc
