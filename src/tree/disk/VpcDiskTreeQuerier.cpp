#include "tree/disk/VpcDiskTreeQuerier.h"

#include <array>

#include "core/util/FileBufferStream.h"
#include "core/util/StringTools.h"
#include "platform/OdGePoint3d.h"

namespace Layout = PointTreeLayout;

namespace {

wxString treeFileName(const OdString& path) {
    return StringTools::ReplaceFileExtension(StringTools::FromOdString(path), Layout::extension);
}

/// Reads `values` at `position` in one read. Expects that they lie within the file.
template <class T, std::size_t n>
bool readAt(FileBufferStream& stream, unsigned long long position, std::array<T, n>& values) {
    stream.StreamSeek(position);
    stream.ReadCharArray2File(reinterpret_cast<char*>(values.data()), sizeof values);
    return stream.IsStreamGood();
}

}  // namespace

VpcDiskTreeQuerier::VpcDiskTreeQuerier(const OdString& path)
    : fileName_(treeFileName(path)), stream_(std::make_unique<FileBufferStream>()) {
    if (!stream_->StreamOpen(fileName_, FileModeRead, false)) {
        fault_ = "cannot be opened";
        return;
    }
    fault_ = header_.Read(*stream_);
    open_ = fault_.empty();
}

VpcDiskTreeQuerier::~VpcDiskTreeQuerier() {
    stream_->StreamClose();
}

unsigned long long VpcDiskTreeQuerier::vptVersion(const OdString& path) {
    FileBufferStream stream;
    if (!stream.StreamOpen(treeFileName(path), FileModeRead, false)) return 0;
    return stream.StreamReadAtUint64(Layout::versionPosition);
}

unsigned long long VpcDiskTreeQuerier::getOffsetHeaderNode(unsigned long long level,
                                                           unsigned long long index) {
    if (!open_ || level >= header_.levels) return 0;
    unsigned long long record = header_.firstNodeRecord;
    for (unsigned long long k = 0; k < level; ++k)
        if (!SkipRecords(record, k, header_.nodeCounts[k])) return 0;
    return SkipRecords(record, level, index) ? record : 0;
}

unsigned long long VpcDiskTreeQuerier::getOffsetPointData() {
    if (!open_) return 0;
    unsigned long long record = header_.firstNodeRecord;
    for (unsigned long long k = 0; k < header_.levels; ++k)
        if (!SkipRecords(record, k, header_.nodeCounts[k])) return 0;
    return record;
}

unsigned long long VpcDiskTreeQuerier::getOffsetHeaderMember(unsigned long long level,
                                                             unsigned long long index,
                                                             offsetHeaderMemberType member) {
    const unsigned long long record = getOffsetHeaderNode(level, index);
    Layout::ChildGrid grid;
    // The record is read whole, so to say: no member of one that leads out of the file is given.
    if (record == 0 || !ReadGrid(record, level, grid)) return 0;
    return record + Layout::memberOffset(member, level, grid);
}

unsigned long long VpcDiskTreeQuerier::getOffsetPointBlock(unsigned long long level,
                                                           unsigned long long index) {
    return getOffsetHeaderMember(level, index, OffsetHeaderPointBlock);
}

unsigned long long VpcDiskTreeQuerier::getOffsetPointList(unsigned long long level,
                                                          unsigned long long index) {
    return getOffsetHeaderMember(level, index, OffsetHeaderPointList);
}

unsigned long long VpcDiskTreeQuerier::nodeNrPoints(unsigned long long level,
                                                    unsigned long long index) {
    const unsigned long long position = getOffsetHeaderMember(level, index, OffsetHeaderPointCount);
    return position == 0 ? 0 : stream_->StreamReadAtUint64(position);
}

bool VpcDiskTreeQuerier::nodeExtents(unsigned long long level, unsigned long long index,
                                     OdGePoint3d& min, OdGePoint3d& max) {
    const unsigned long long position = getOffsetHeaderMember(level, index, OffsetHeaderBoxMinimum);
    std::array<double, 6> box{};
    if (position == 0 || !readAt(*stream_, position, box)) return false;
    min = OdGePoint3d(box[0], box[1], box[2]);
    max = OdGePoint3d(box[3], box[4], box[5]);
    return true;
}

bool VpcDiskTreeQuerier::rootNodeExtents(OdGePoint3d& min, OdGePoint3d& max) {
    return nodeExtents(0, 0, min, max);
}

bool VpcDiskTreeQuerier::ReadGrid(unsigned long long record, unsigned long long level,
                                  Layout::ChildGrid& grid) {
    const unsigned long long available = record < header_.fileSize ? header_.fileSize - record : 0;
    if (!Layout::recordFits(level, {}, available)) return false;
    std::array<unsigned long long, 3> counts{};
    if (!readAt(*stream_, record + Layout::childrenXOffset(level), counts)) return false;
    grid = {counts[0], counts[1], counts[2]};
    return Layout::recordFits(level, grid, available);
}

bool VpcDiskTreeQuerier::SkipRecords(unsigned long long& record, unsigned long long level,
                                     unsigned long long count) {
    for (unsigned long long i = 0; i < count; ++i) {
        Layout::ChildGrid grid;
        if (!ReadGrid(record, level, grid)) return false;
        record += Layout::recordSize(level, grid);
    }
    return true;
}
