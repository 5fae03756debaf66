#pragma once

#include <functional>

#include "tree/file/NodeRecord.h"
#include "tree/file/PointTreeReader.h"
#include "tree/verify/Finding.h"
#include "tree/verify/LinkVerifier.h"

namespace vpc {

/// Checks everything in a point tree file that can be checked from the file alone, against the
/// layout and not against the code that wrote it. Whatever a VpcDiskTree refuses to load is a fault
/// here; and so is a value that contradicts another one although the tree would load. It reads the
/// file from front to back and keeps the links of two levels in memory, but never all points of a
/// node.
class TreeVerifier {
public:
    /// Called with the points of every node that has been checked. What it throws ends the check.
    using Progress = std::function<void(unsigned long long points)>;

    /// \param file must outlive the verifier
    TreeVerifier(PointTreeReader& file, FindingSink sink, Progress progress = nullptr);

    /// Gives every fault to the sink; a failure to read the file is one of them. Stops early where
    /// it cannot make out the rest of the file.
    void Run();

private:
    /// What ended the check, and whether it is that the file is cut short within header or records.
    wxString Explained(const IoError& failure);
    /// Reads a word of the header; false where the file ends before it.
    bool ReadWord(unsigned long long position, unsigned long long& word);
    void CheckHeader();
    void CheckShape();
    void CheckRecords();
    void CheckRecord(const NodeRecord& record);
    void CheckPath(const NodeRecord& record);
    void CheckGrid(const NodeRecord& record);
    void CheckPointBlocks();

    PointTreeReader& file_;
    FindingSink sink_;
    Progress progress_;
    LinkVerifier links_;
    /// Where the node records end.
    unsigned long long pointData_ = 0;
};

}  // namespace vpc
