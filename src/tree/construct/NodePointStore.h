#pragma once

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tree/construct/PointPacker.h"
#include "tree/construct/RecordBlock.h"
#include "tree/construct/SpillFile.h"

namespace vpc {

class NodePoints;
class RestingPoints;

/// Memory for points on their way to or from the file for all nodes: a piece of it, and a block.
struct SpillScratch {
    char bytes[256U << 10U];
    RecordBlock block;
};

/// The memory behind all nodes' points, shared by the nodes of one construction tree.
///
/// Without a budget, points leave memory when their node says so, to a file of the node's own. With
/// a budget they stay until they fill it. Then the store writes all points of one node to the file
/// for all nodes: few large writes in place of many small ones.
class NodePointStore {
public:
    /// \param budget    bytes of points to keep in memory; 0 leaves that to the nodes
    /// \param spillPath where to put the file for all nodes; not used without a budget. Throws
    ///                  vpc::IoError when it cannot be created
    NodePointStore(unsigned long long budget, const std::string& spillPath);
    ~NodePointStore();
    NodePointStore(const NodePointStore&) = delete;
    NodePointStore& operator=(const NodePointStore&) = delete;

    /// True when the store, not the nodes, decides when points leave memory.
    bool WritesBehind() const { return blockLimit_ != 0; }
    /// The place for the points of a node that leave memory.
    ///
    /// \param path the file for that node, where there is no budget
    /// \param zone where they are put in the file for all nodes
    std::unique_ptr<RestingPoints> MakeRestingPoints(const std::string& path, unsigned zone);
    /// True when so many nodes share the memory that this full node should not make more of them:
    /// their points would be written over and over, a few at a time. A node with points at rest is
    /// held back where each has less than blocksWorthWriting blocks. Any other is held back where
    /// each has less than two and the points come in no order; in order, most nodes are done and
    /// only wait to be written.
    bool IsThinlySpread(const NodePoints& node) const;
    /// Tells whether the next points are far apart from one another.
    void NoteOrder(bool isScattered) {
        scatter_ = isScattered ? std::min(scatter_ + 1, mostScatter) : std::max(scatter_ - 1, 0);
    }
    /// Whether most of the last points were far apart from one another.
    bool IsScattered() const { return scatter_ > mostScatter / 2; }
    /// The most points, in blocks, that may be read back into memory at once, where they take
    /// several times the space.
    unsigned long long BlocksToLoad() const { return blockLimit_ / 8; }

    /// A block for `user`. When the budget is spent, a node's points are written for it, perhaps
    /// those of `user`. Throws vpc::IoError when they cannot be written.
    [[nodiscard]] RecordBlock* Acquire(NodePoints& user);
    /// Takes back a chain of blocks, of which `last` is the last one.
    void Release(RecordBlock* first, RecordBlock* last, unsigned long long count);
    /// `user` holds blocks that may be written out from now on, if it was not known to.
    void Enlist(NodePoints& user);
    /// The points of `user` are not to be written out any more.
    void Forget(NodePoints& user);

    /// Whether points go to the file for all nodes in compact blocks. A small file is not worth the
    /// time that these take: the system keeps it in its cache, and the disk never sees it.
    bool SpillsCompact() const { return spill_->BytesOnDisk() >= largeFile_; }
    /// From this size in bytes on a file is a large one.
    void SetLargeFile(unsigned long long bytes) { largeFile_ = bytes; }
    unsigned long long LargeFile() const { return largeFile_; }

    /// The file for all nodes; only with a budget.
    SpillFile& Spill() { return *spill_; }
    const SpillFile& Spill() const { return *spill_; }
    PointPacker& Packer() { return packer_; }
    const PointPacker& Packer() const { return packer_; }

private:
    friend class ScratchLoan;

    /// A node with as many blocks is written out at once; one with fewer only when it has not
    /// grown for long.
    static constexpr unsigned long long blocksWorthWriting = 8;

    void AddSlab();
    void Unlink(NodePoints& user);
    void MakeRoom();

    unsigned long long blockLimit_;
    std::optional<SpillFile> spill_;
    unsigned long long largeFile_ = 1ULL << 30;
    PointPacker packer_;
    unsigned long long blocksInUse_ = 0;
    RecordBlock* free_ = nullptr;
    struct FreeSlab {
        void operator()(void* slab) const { std::free(slab); }
    };
    std::vector<std::unique_ptr<void, FreeSlab>> slabs_;
    std::vector<std::unique_ptr<SpillScratch>> scratches_;
    /// The nodes that hold blocks, the one that asked for a block longest ago first.
    NodePoints* oldest_ = nullptr;
    NodePoints* newest_ = nullptr;
    unsigned long long holders_ = 0;
    static constexpr int mostScatter = 1000;
    int scatter_ = 0;
};

/// Lends a scratch, and gives it back to the store to be lent again: they are taken all the time,
/// several at once where nodes are split within one another.
class ScratchLoan {
public:
    explicit ScratchLoan(NodePointStore& store);
    ~ScratchLoan();
    ScratchLoan(const ScratchLoan&) = delete;
    ScratchLoan& operator=(const ScratchLoan&) = delete;

    SpillScratch& operator*() const { return *scratch_; }
    SpillScratch* operator->() const { return scratch_.get(); }

private:
    NodePointStore& store_;
    std::unique_ptr<SpillScratch> scratch_;
};

}  // namespace vpc
