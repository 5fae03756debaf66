#pragma once

#include <memory>
#include <optional>

#include <wx/string.h>

#include "core/util/IoError.h"
#include "tree/file/PointTreeHeader.h"

class FileBufferStream;

namespace vpc {

struct NodeRecord;

/// Thrown for a point tree file of another version than this library reads.
class WrongTreeVersion : public IoError {
public:
    WrongTreeVersion(const wxString& file, unsigned long long version);

    /// The version of the file.
    unsigned long long Version() const { return version_; }
    /// The translated sentence without the file's name. It begins with a blank, so that it can
    /// follow the name directly.
    static wxString Text(unsigned long long version);

private:
    unsigned long long version_;
};

/// A point tree file, opened once for everything that is read from it: the version, the header, the
/// node records (NodeRecordReader) and ranges of bytes (Read, FileWindow).
///
/// Whoever loads, checks or exports a tree file passes this on in place of the file's name. One
/// thread at a time.
class PointTreeReader {
public:
    /// Opens the file. Throws IoError where it cannot be opened or read.
    explicit PointTreeReader(const wxString& fileName);
    ~PointTreeReader();
    PointTreeReader(const PointTreeReader&) = delete;
    PointTreeReader& operator=(const PointTreeReader&) = delete;

    /// The version of the file of that name; 0 where it cannot be read.
    static unsigned long long VersionOf(const wxString& fileName);

    const wxString& FileName() const { return fileName_; }
    /// The file's length in bytes when it was opened.
    unsigned long long Size() const { return size_; }

    /// The version that the file claims; 0 where the file is too short to claim any.
    unsigned long long Version() const { return version_; }
    /// Throws WrongTreeVersion unless the version is the one that this library reads.
    void RequireVersion() const;

    /// The header, which the first call reads. Throws IoError where what it counts does not fit in
    /// the file.
    const PointTreeHeader& Header();
    /// Throws IoError where the points in this file have records of another size than VpcPoint3D
    /// reads, or where Header does.
    void RequirePointRecords();
    /// How many points the file has room for.
    unsigned long long RoomForPoints() const;
    /// Throws IoError where the points that the record claims do not lie within the file, or are
    /// more than `room`. Takes them from `room`, which begins as RoomForPoints: nodes whose points
    /// overlap would add up to more than any file of this size holds.
    void RequirePoints(const NodeRecord& record, unsigned long long& room) const;

    /// Reads up to `count` bytes at `position` into `target`.
    /// \return how many could be read: fewer than `count` where the file ends or its disk fails
    unsigned long long Read(unsigned long long position, char* target, unsigned long long count);
    /// The system's reason (errno) for the first failure; 0 where nothing has failed but for reads
    /// beyond the file's end.
    int SystemError() const;
    /// Throws the IoError for bytes that Read should have given, with the system's reason.
    [[noreturn]] void FailReading() const;

private:
    wxString fileName_;
    std::unique_ptr<FileBufferStream> stream_;
    unsigned long long size_ = 0;
    unsigned long long version_ = 0;
    std::optional<PointTreeHeader> header_;
};

}  // namespace vpc
