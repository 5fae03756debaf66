#pragma once

#include "tree/file/FileWindow.h"
#include "tree/file/NodeRecord.h"
#include "tree/file/PointTreeHeader.h"

namespace vpc {

/// Visits the node records of a point tree file from the first to the last, in one pass and with
/// the memory of one record.
class NodeRecordReader {
public:
    /// \param header of that file, read without fault; must outlive the reader
    NodeRecordReader(const wxString& path, const PointTreeHeader& header);

    /// Reads the next record. False after the last one, and where a record does not fit in the
    /// file or cannot be read (`Failed` tells which).
    bool Next(NodeRecord& record);
    /// Whether the reading ended early, at `Position`.
    bool Failed() const { return failed_; }
    /// Where the next record begins; after the last one, where the point blocks begin.
    unsigned long long Position() const { return position_; }
    /// Level and place in it of the next record.
    unsigned long long Level() const { return level_; }
    unsigned long long Index() const { return index_; }

private:
    bool ReadRecord(NodeRecord& record);
    void SkipFinishedLevels();

    const PointTreeHeader& header_;
    FileWindow file_;
    unsigned long long position_;
    unsigned long long level_ = 0;
    unsigned long long index_ = 0;
    bool failed_ = false;
};

}  // namespace vpc
