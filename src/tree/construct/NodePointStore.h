#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tree/construct/RecordBlock.h"
#include "tree/construct/SpillFile.h"

namespace vpc {

class NodePoints;

/// The memory behind all nodes' points, shared by the nodes of one construction tree.
///
/// Without a budget a node's buffered points go to the node's own file as soon as the node says
/// so. With a budget the store keeps points in memory until they fill it and only then writes out
/// the node that has waited longest, whole, to one file for all nodes: a few large writes in place
/// of many small ones to thousands of files, whose making and removing would cost more than the
/// writing.
class NodePointStore {
public:
    /// \param budget    bytes of points to keep in memory; 0 keeps none that a node wants written
    /// \param spillPath where to put the file for all nodes; not used without a budget. Throws
    ///                  vpc::IoError when it cannot be created
    NodePointStore(unsigned long long budget, const std::string& spillPath);
    ~NodePointStore();
    NodePointStore(const NodePointStore&) = delete;
    NodePointStore& operator=(const NodePointStore&) = delete;

    /// True when the store, not the nodes, decides when points go to their files.
    bool WritesBehind() const { return blockLimit_ != 0; }

    /// A block for `user`, taken from a node that was used less recently when the budget is spent.
    /// Throws vpc::IoError when that node's points cannot be written.
    [[nodiscard]] RecordBlock* Acquire(NodePoints& user);
    /// Takes back a chain of blocks, of which `last` is the last one.
    void Release(RecordBlock* first, RecordBlock* last, unsigned long long count);
    /// `user` holds no blocks any more.
    void Forget(NodePoints& user);

    /// The file for all nodes; only with a budget.
    SpillFile& Spill() { return *spill_; }

    /// Space for `scratchRecords` records, to move points between memory and file in one piece.
    static constexpr unsigned long long scratchRecords = 16384;
    using Scratch = std::unique_ptr<char[]>;
    Scratch TakeScratch();
    void ReturnScratch(Scratch scratch) { scratches_.push_back(std::move(scratch)); }

private:
    void AddSlab();
    void MoveToBack(NodePoints& user);
    void Unlink(NodePoints& user);
    void WriteOutOldest();

    unsigned long long blockLimit_;
    std::optional<SpillFile> spill_;
    unsigned long long blocksInUse_ = 0;
    RecordBlock* free_ = nullptr;
    std::vector<std::unique_ptr<RecordBlock[]>> slabs_;
    std::vector<Scratch> scratches_;
    /// The nodes that hold blocks, the one that asked for a block longest ago first.
    NodePoints* oldest_ = nullptr;
    NodePoints* newest_ = nullptr;
};

}  // namespace vpc
