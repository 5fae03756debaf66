#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>

#include "tree/construct/NodePointStore.h"
#include "tree/construct/RestingPoints.h"

namespace vpc {

/// The points of one construction node: those that have left memory, and behind them in order those
/// that are still there, packed in blocks.
class NodePoints {
public:
    using Visitor = RestingPoints::Visitor;

    /// \param zone of the SpillFile, for those of its points that go there
    explicit NodePoints(NodePointStore& store, unsigned zone = 0) : store_(&store), zone_(zone) {}
    ~NodePoints() { Clear(); }
    NodePoints(const NodePoints&) = delete;
    NodePoints& operator=(const NodePoints&) = delete;

    unsigned long long Count() const { return count_; }
    /// How many of them have left memory.
    unsigned long long Resting() const { return resting_; }
    /// The blocks that all points take, roughly.
    unsigned long long Blocks() const { return restingBlocks_ + blocks_; }
    /// The node's own file; empty where it has none.
    std::string File() const { return rest_ != nullptr ? rest_->File() : std::string(); }

    /// From now on the numbers of their arrival are kept with the points.
    void KeepArrivals() {
        keepsArrivals_ = true;
        tailFormat_ = noFormat;  // the last block has no room for them
    }
    bool KeepsArrivals() const { return keepsArrivals_; }

    /// Adds a packed point, of which whole words can be read.
    ///
    /// \param arrival the number of its arrival, which is no smaller than those before it
    void Append(const char* record, unsigned format, unsigned size, unsigned long long arrival) {
        using Offset = RecordBlock::ArrivalOffset;
        if (room_ == 0 || format != tailFormat_ ||
            (keepsArrivals_ && arrival - tailArrival_ > std::numeric_limits<Offset>::max()))
            AddBlock(format, size, arrival);
        char* place = cursor_;
        cursor_ += tailStride_;
        --room_;
        ++count_;
        copyPacked(place, record, size);
        if (!keepsArrivals_) return;
        const auto offset = static_cast<Offset>(arrival - tailArrival_);
        std::memcpy(place + size, &offset, sizeof offset);
    }

    /// Adds as many of `count` packed points, one behind the other and without arrivals, as one
    /// block takes, and returns how many; none where arrivals are kept.
    unsigned AppendSome(const char* records, unsigned count, unsigned format, unsigned size) {
        if (room_ == 0 || keepsArrivals_ || format != tailFormat_) return 0;
        const unsigned added = std::min(count, room_);
        std::memcpy(cursor_, records, std::size_t{added} * size);
        cursor_ += std::size_t{added} * size;
        room_ -= added;
        count_ += added;
        return added;
    }

    /// Makes the points that are in memory rest, and frees their memory. The node's own file is
    /// created even if there are none. Throws vpc::IoError when they cannot be written; they then
    /// stay in memory, and those that rest already stay, too.
    ///
    /// \param path the node's own file, where nodes have files of their own
    void WriteOut(const std::string& path = {});

    /// Has the processor fetch what the next Append reads, and, once that is there, what it writes.
    void PrefetchForAppend() const { __builtin_prefetch(this, 1); }
    void PrefetchPlace() const {
        constexpr std::size_t lastByte = 2 * std::size_t{RecordBlock::wordSize} - 1;
        if (cursor_ == nullptr) return;
        __builtin_prefetch(cursor_, 1);
        __builtin_prefetch(cursor_ + lastByte, 1);
    }

    /// Calls `visit` with all points in order. Meanwhile none of them leaves memory. Throws
    /// vpc::IoError when those that rest cannot be read whole.
    void Visit(const Visitor& visit);
    /// The same for the last time: on the way the room of what was visited is given back.
    void VisitAndClear(const Visitor& visit);

    /// Removes all points.
    void Clear();
    /// Frees the points in memory and keeps those that rest.
    void ClearMemory();
    /// Takes all points of `other`, which has none afterwards. A file keeps the name that it has.
    void TakeOver(NodePoints& other);
    /// Renames the node's own file, if there is one, from `oldPath`. Throws vpc::IoError when that
    /// fails.
    void Rename(const std::string& oldPath, const std::string& newPath) {
        if (rest_ != nullptr) rest_->Rename(oldPath, newPath);
    }

private:
    friend class NodePointStore;

    static constexpr unsigned noFormat = std::numeric_limits<unsigned>::max();

    void AddBlock(unsigned format, unsigned size, unsigned long long firstArrival);
    /// Notes in the last block how many points it holds.
    void CountTail();
    void VisitMemory(const Visitor& visit);

    // What is needed for every point comes first, to lie together.
    char* cursor_ = nullptr;
    unsigned room_ = 0;
    unsigned tailFormat_ = 0;
    unsigned tailStride_ = 1;
    bool keepsArrivals_ = false;
    bool listed_ = false;
    unsigned long long count_ = 0;
    unsigned long long tailArrival_ = 0;
    RecordBlock* last_ = nullptr;
    RecordBlock* first_ = nullptr;
    unsigned long long blocks_ = 0;
    unsigned long long resting_ = 0;
    unsigned long long restingBlocks_ = 0;
    /// Count() when the store last looked for points to write out.
    unsigned long long countWhenSeen_ = 0;
    NodePointStore* store_;
    unsigned zone_;
    std::unique_ptr<RestingPoints> rest_;
    NodePoints* older_ = nullptr;
    NodePoints* newer_ = nullptr;
};

}  // namespace vpc
