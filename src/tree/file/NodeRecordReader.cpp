#include "tree/file/NodeRecordReader.h"

#include <cstring>

#include <wx/translation.h>

#include "tree/file/PointTreeReader.h"

namespace vpc {

namespace Layout = PointTreeLayout;

namespace {

/// Takes values from a record's bytes, one after the other.
class Cursor {
public:
    explicit Cursor(const char* bytes) : next_(bytes) {}

    template <class T>
    void Take(T& value) {
        std::memcpy(&value, next_, sizeof value);
        next_ += sizeof value;
    }
    template <class T>
    void Take(std::vector<T>& values, unsigned long long count) {
        values.resize(count);
        if (count == 0) return;
        std::memcpy(values.data(), next_, count * sizeof(T));
        next_ += count * sizeof(T);
    }

private:
    const char* next_;
};

Layout::ChildGrid gridAt(const char* bytes) {
    Layout::ChildGrid grid;
    Cursor cursor(bytes);
    cursor.Take(grid.x);
    cursor.Take(grid.y);
    cursor.Take(grid.z);
    return grid;
}

/// Reads the other members. The caller has set the grid, on which their positions depend.
void parse(const char* bytes, NodeRecord& record) {
    Cursor cursor(bytes);
    cursor.Take(record.levelWord);
    cursor.Take(record.minimumDistance);
    cursor.Take(record.indexPath, record.level + 1);
    cursor.Take(record.gridPath, record.level + 1);
    cursor.Take(record.boxMinimum);
    cursor.Take(record.boxMaximum);
    cursor.Take(record.points);
    cursor = Cursor(bytes + Layout::cellWidthsOffset(record.level));
    cursor.Take(record.cellWidths, record.grid.widths());
    cursor.Take(record.recordPosition);
    cursor.Take(record.pointBlock);
    cursor.Take(record.pointList);
    cursor.Take(record.parentRecord);
    cursor.Take(record.parentPointBlock);
    cursor.Take(record.children, record.grid.cells());
}

}  // namespace

NodeRecordReader::NodeRecordReader(PointTreeReader& file)
    : file_(file), header_(file.Header()), window_(file), position_(header_.firstNodeRecord) {
    SkipFinishedLevels();
}

bool NodeRecordReader::Next(NodeRecord& record) {
    if (level_ >= header_.levels) return false;
    ReadRecord(record);
    position_ += record.size;
    ++index_;
    SkipFinishedLevels();
    return true;
}

void NodeRecordReader::ReadRecord(NodeRecord& record) {
    record.level = level_;
    record.index = index_;
    record.position = position_;
    record.grid = gridAt(RecordBytes({}) + Layout::childrenXOffset(level_));
    record.size = Layout::recordSize(level_, record.grid);
    parse(RecordBytes(record.grid), record);
}

const char* NodeRecordReader::RecordBytes(const Layout::ChildGrid& grid) {
    const unsigned long long available = file_.Size() > position_ ? file_.Size() - position_ : 0;
    const char* const bytes = Layout::recordFits(level_, grid, available)
                                  ? window_.Bytes(position_, Layout::recordSize(level_, grid))
                                  : nullptr;
    if (bytes == nullptr)
        throw IoError(file_.FileName(),
                      wxString::Format(_("ends within the record of node %llu of level %llu"),
                                       index_, level_));
    return bytes;
}

void NodeRecordReader::SkipFinishedLevels() {
    while (level_ < header_.levels && index_ >= header_.nodeCounts[level_]) {
        ++level_;
        index_ = 0;
    }
}

}  // namespace vpc
