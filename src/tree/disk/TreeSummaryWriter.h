#pragma once

#include <cstdio>

#include <wx/string.h>

#include "tree/disk/VpcDiskTree.h"

namespace vpc {

/// Writes the text summary of a loaded tree: the values of every node's record, and the totals of
/// every level.
class TreeSummaryWriter {
public:
    /// \param tree must outlive the writer
    /// \param detailed whether to write the nodes, not just the totals
    TreeSummaryWriter(const VpcDiskTree& tree, bool detailed) : tree_(tree), detailed_(detailed) {}

    /// False when the file cannot be opened or written.
    bool Write(const wxString& fileName);

private:
    void WriteNode(unsigned long long level, unsigned long long index, const VpcDiskNode& node);
    void WriteTotals(unsigned long long level, unsigned long long nodes, unsigned long long points);
    void WriteLine(const std::string& line);

    const VpcDiskTree& tree_;
    bool detailed_;
    std::FILE* file_ = nullptr;
};

}  // namespace vpc
