#include "tree/file/NodeRecordReader.h"

#include <cstring>

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

/// Takes the members apart; the grid is known already, since it tells where the others stand.
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

NodeRecordReader::NodeRecordReader(const wxString& path, const PointTreeHeader& header)
    : header_(header), file_(path), position_(header.firstNodeRecord) {
    SkipFinishedLevels();
}

bool NodeRecordReader::Next(NodeRecord& record) {
    if (failed_ || level_ >= header_.levels) return false;
    if (!ReadRecord(record)) {
        failed_ = true;
        return false;
    }
    position_ += record.size;
    ++index_;
    SkipFinishedLevels();
    return true;
}

bool NodeRecordReader::ReadRecord(NodeRecord& record) {
    const unsigned long long available = file_.Size() > position_ ? file_.Size() - position_ : 0;
    if (!Layout::recordFits(level_, {}, available)) return false;
    const char* fixed = file_.Bytes(position_, Layout::recordSize(level_, {}));
    if (fixed == nullptr) return false;
    record.level = level_;
    record.index = index_;
    record.position = position_;
    record.grid = gridAt(fixed + Layout::childrenXOffset(level_));
    if (!Layout::recordFits(level_, record.grid, available)) return false;
    record.size = Layout::recordSize(level_, record.grid);
    const char* bytes = file_.Bytes(position_, record.size);
    if (bytes == nullptr) return false;
    parse(bytes, record);
    return true;
}

void NodeRecordReader::SkipFinishedLevels() {
    while (level_ < header_.levels && index_ >= header_.nodeCounts[level_]) {
        ++level_;
        index_ = 0;
    }
}

}  // namespace vpc
