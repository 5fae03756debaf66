#include "tree/disk/VpcDiskTreeQuerier.h"

#include "core/util/StringTools.h"
#include "platform/OdGePoint3d.h"
#include "tree/file/PointTreeReader.h"

namespace Layout = PointTreeLayout;

namespace {

wxString treeFileName(const OdString& path) {
    return StringTools::ReplaceFileExtension(StringTools::FromOdString(path), Layout::extension);
}

}  // namespace

VpcDiskTreeQuerier::VpcDiskTreeQuerier(const OdString& path) : fileName_(treeFileName(path)) {
    try {
        file_ = std::make_unique<vpc::PointTreeReader>(fileName_);
        header_ = file_->Header();
    } catch (const vpc::IoError& error) {
        fault_ = error.Problem();
    }
}

VpcDiskTreeQuerier::~VpcDiskTreeQuerier() = default;

unsigned long long VpcDiskTreeQuerier::vptVersion(const OdString& path) {
    return vpc::PointTreeReader::VersionOf(treeFileName(path));
}

unsigned long long VpcDiskTreeQuerier::version() const {
    return file_ == nullptr ? 0 : file_->Version();
}

unsigned long long VpcDiskTreeQuerier::getOffsetHeaderNode(unsigned long long level,
                                                           unsigned long long index) {
    if (!isOpen() || level >= header_.levels) return 0;
    unsigned long long record = header_.firstNodeRecord;
    for (unsigned long long k = 0; k < level; ++k)
        if (!SkipRecords(record, k, header_.nodeCounts[k])) return 0;
    return SkipRecords(record, level, index) ? record : 0;
}

unsigned long long VpcDiskTreeQuerier::getOffsetPointData() {
    if (!isOpen()) return 0;
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
    // A record that does not fit in the file has no members, not even those that would fit.
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
    std::array<unsigned long long, 1> count{};
    return position != 0 && ReadAt(position, count) ? count[0] : 0;
}

bool VpcDiskTreeQuerier::nodeExtents(unsigned long long level, unsigned long long index,
                                     OdGePoint3d& min, OdGePoint3d& max) {
    const unsigned long long position = getOffsetHeaderMember(level, index, OffsetHeaderBoxMinimum);
    std::array<double, 6> box{};
    if (position == 0 || !ReadAt(position, box)) return false;
    min = OdGePoint3d(box[0], box[1], box[2]);
    max = OdGePoint3d(box[3], box[4], box[5]);
    return true;
}

bool VpcDiskTreeQuerier::rootNodeExtents(OdGePoint3d& min, OdGePoint3d& max) {
    return nodeExtents(0, 0, min, max);
}

template <class T, std::size_t n>
bool VpcDiskTreeQuerier::ReadAt(unsigned long long position, std::array<T, n>& values) {
    return file_->Read(position, reinterpret_cast<char*>(values.data()), sizeof values) ==
           sizeof values;
}

bool VpcDiskTreeQuerier::ReadGrid(unsigned long long record, unsigned long long level,
                                  Layout::ChildGrid& grid) {
    const unsigned long long available = record < header_.fileSize ? header_.fileSize - record : 0;
    if (!Layout::recordFits(level, {}, available)) return false;
    std::array<unsigned long long, 3> counts{};
    if (!ReadAt(record + Layout::childrenXOffset(level), counts)) return false;
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
