#include "tree/file/PointTreeReader.h"

#include <algorithm>
#include <limits>

#include <wx/translation.h>

#include "core/geometry/VpcPoint3D.h"
#include "core/util/FileBufferStream.h"
#include "tree/file/NodeRecord.h"
#include "tree/file/PointTreeLayout.h"

namespace vpc {

namespace {

/// A version too large for an int must not be cut down to one that looks right.
int forMessage(unsigned long long version) {
    constexpr unsigned long long greatest = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(version, greatest));
}

}  // namespace

WrongTreeVersion::WrongTreeVersion(const wxString& file, unsigned long long version)
    : IoError(file, Text(version).Trim(false)), version_(version) {
}

wxString WrongTreeVersion::Text(unsigned long long version) {
    return wxString::Format(_(" vpt version is %d but software expects version %d"),
                            forMessage(version), forMessage(PointTreeLayout::version));
}

PointTreeReader::PointTreeReader(const wxString& fileName)
    : fileName_(fileName), stream_(std::make_unique<FileBufferStream>()) {
    if (!stream_->StreamOpen(fileName, FileModeRead, false))
        throw IoError(fileName, _("cannot be opened"), stream_->SystemError());
    size_ = stream_->StreamSize();
    version_ = stream_->StreamReadAtUint64(PointTreeLayout::versionPosition);
    if (stream_->HasSystemError()) FailReading();
}

PointTreeReader::~PointTreeReader() = default;

unsigned long long PointTreeReader::VersionOf(const wxString& fileName) {
    try {
        return PointTreeReader(fileName).Version();
    } catch (const IoError&) {
        return 0;
    }
}

void PointTreeReader::RequireVersion() const {
    if (version_ != PointTreeLayout::version) throw WrongTreeVersion(fileName_, version_);
}

const PointTreeHeader& PointTreeReader::Header() {
    if (!header_) {
        stream_->StreamClearState();
        header_ = PointTreeHeader::Read(*stream_, *this);
    }
    return *header_;
}

void PointTreeReader::RequirePointRecords() {
    constexpr unsigned long long expected = VpcPoint3D::SerializeDiskSize();
    const unsigned long long size = Header().pointRecordSize;
    if (size != expected)
        throw IoError(fileName_,
                      wxString::Format(_("holds point records of %llu bytes in place of %llu"),
                                       size, expected));
}

unsigned long long PointTreeReader::RoomForPoints() const {
    return size_ / VpcPoint3D::SerializeDiskSize();
}

void PointTreeReader::RequirePoints(const NodeRecord& record, unsigned long long& room) const {
    const bool fit = record.pointList <= size_ &&
                     record.points <= (size_ - record.pointList) / VpcPoint3D::SerializeDiskSize();
    if (!fit)
        throw IoError(fileName_,
                      wxString::Format(_("ends before the points of node %llu of level %llu"),
                                       record.index, record.level));
    if (record.points > room)
        throw IoError(fileName_, _("claims more points than it has room for"));
    room -= record.points;
}

unsigned long long PointTreeReader::Read(unsigned long long position, char* target,
                                         unsigned long long count) {
    stream_->StreamClearState();
    stream_->StreamSeek(position);
    stream_->ReadCharArray2File(target, count);
    if (stream_->IsStreamGood()) return count;
    const unsigned long long end = stream_->StreamPosition();
    return end > position ? std::min(end - position, count) : 0;
}

int PointTreeReader::SystemError() const {
    return stream_->SystemError();
}

void PointTreeReader::FailReading() const {
    throw IoError(fileName_, _("cannot be read"), SystemError());
}

}  // namespace vpc
