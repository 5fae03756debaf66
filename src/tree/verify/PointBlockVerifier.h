#pragma once

#include "tree/file/FileWindow.h"
#include "tree/file/NodeRecord.h"
#include "tree/file/PointTreeReader.h"
#include "tree/verify/Finding.h"

namespace vpc {

/// Checks the point blocks: that each stands right behind the one before it, where its record says
/// it does, that it repeats the record's level and count, and that its points lie in the node's
/// box. Call Add with every record in file order.
class PointBlockVerifier {
public:
    /// \param file, sink must outlive the verifier
    /// \param pointData where the first block should begin
    PointBlockVerifier(PointTreeReader& file, unsigned long long pointData,
                       const FindingSink& sink);

    /// Throws IoError where the file cannot be read.
    void Add(const NodeRecord& record);
    /// Call this after the last record: the file must end where the last block does.
    void Finish();

private:
    void CheckPosition(const NodeRecord& record);
    void CheckBlock(const NodeRecord& record);
    void CheckPoints(const NodeRecord& record);

    PointTreeReader& file_;
    FileWindow window_;
    const FindingSink& sink_;
    /// Where the next block should begin. After a block that is out of its place there is a second
    /// such position: the one that is right if that block is right and the count before it wrong. 0
    /// while there is none.
    unsigned long long expected_;
    unsigned long long alternative_ = 0;
};

}  // namespace vpc
