#pragma once

#include "tree/file/FileWindow.h"
#include "tree/file/NodeRecord.h"
#include "tree/file/PointTreeHeader.h"

namespace vpc {

/// Visits the node records of a point tree file from the first to the last, in one pass and with
/// the memory of one record.
class NodeRecordReader {
public:
    /// Throws what PointTreeReader::Header throws.
    /// \param file must outlive the reader
    explicit NodeRecordReader(PointTreeReader& file);

    /// Reads the next record; false after the last one. Throws IoError where the record at
    /// `Position` does not fit in the file or cannot be read.
    [[nodiscard]] bool Next(NodeRecord& record);
    /// Where the next record begins; after the last one, where the point blocks begin.
    unsigned long long Position() const { return position_; }

private:
    void ReadRecord(NodeRecord& record);
    const char* RecordBytes(const PointTreeLayout::ChildGrid& grid);
    void SkipFinishedLevels();

    PointTreeReader& file_;
    const PointTreeHeader& header_;
    FileWindow window_;
    unsigned long long position_;
    /// The level of the next record, and its place within the level.
    unsigned long long level_ = 0;
    unsigned long long index_ = 0;
};

}  // namespace vpc
