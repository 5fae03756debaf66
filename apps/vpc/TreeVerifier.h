#pragma once

#include "tree/file/NodeRecord.h"
#include "tree/file/PointTreeHeader.h"
#include "vpc/Findings.h"
#include "vpc/LinkVerifier.h"

class VpcDiskTreeQuerier;

namespace vpc {

/// Checks everything in a point tree file that can be checked from the file alone, against the
/// layout and not against the code that wrote it. Goes through the file from front to back, with
/// the links of two levels in memory and never all points of a node.
class TreeVerifier {
public:
    TreeVerifier(const VpcDiskTreeQuerier& querier, Findings& findings);
    void Run();

private:
    bool CheckHeader();
    void CheckHeaderValues();
    bool CheckRecords();
    void CheckRecord(const NodeRecord& record);
    void CheckPath(const NodeRecord& record);
    void CheckGrid(const NodeRecord& record);
    void CheckPointBlocks();

    const VpcDiskTreeQuerier& querier_;
    const PointTreeHeader& header_;
    Findings& findings_;
    LinkVerifier links_;
    unsigned long long pointData_ = 0;
};

}  // namespace vpc
