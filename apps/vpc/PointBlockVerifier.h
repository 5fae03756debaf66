#pragma once

#include "tree/file/FileWindow.h"
#include "tree/file/NodeRecord.h"
#include "vpc/Findings.h"

namespace vpc {

/// Checks the point blocks: that each stands right behind the one before it, where its record says
/// it does, that it repeats the record's level and count, and that its points lie in the node's
/// box. Is shown every record in file order.
class PointBlockVerifier {
public:
    /// \param pointData where the first block is to be
    PointBlockVerifier(const wxString& file, unsigned long long pointData, Findings& findings);

    void Add(const NodeRecord& record);
    /// To be called after the last record: the file must end where the last block does.
    void Finish();

private:
    void CheckPosition(const NodeRecord& record);
    void CheckBlock(const NodeRecord& record);
    void CheckPoints(const NodeRecord& record);

    FileWindow file_;
    Findings& findings_;
    /// Where the next block is to be; and, after a block out of its place, where it would be if
    /// that block was right and the count before it wrong (0: no such doubt).
    unsigned long long expected_;
    unsigned long long alternative_ = 0;
};

}  // namespace vpc
