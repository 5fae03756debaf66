#include "tree/construct/NodePointStore.h"

#include <algorithm>
#include <new>
#include <utility>

#include <sys/mman.h>

#include "tree/construct/NodeFile.h"
#include "tree/construct/NodePoints.h"
#include "tree/construct/SpilledPoints.h"

namespace vpc {

namespace {

/// Memory is taken in the processor's large pages: points in random order touch all blocks in turn,
/// which are more than it can keep the addresses of in small ones.
constexpr unsigned long long slabBytes = 2ULL << 20;
constexpr unsigned long long blocksPerSlab = slabBytes / RecordBlock::size;
/// A smaller budget would leave no room for the nodes of one split.
constexpr unsigned long long fewestBlocks = 16;

unsigned long long blocksWithin(unsigned long long budget) {
    return budget == 0 ? 0 : std::max(budget / RecordBlock::size, fewestBlocks);
}

}  // namespace

NodePointStore::NodePointStore(unsigned long long budget, const std::string& spillPath)
    : blockLimit_(blocksWithin(budget)) {
    if (WritesBehind()) spill_.emplace(spillPath);
}

NodePointStore::~NodePointStore() = default;

std::unique_ptr<RestingPoints> NodePointStore::MakeRestingPoints(const std::string& path,
                                                                 unsigned zone) {
    if (WritesBehind()) return std::make_unique<SpilledPoints>(*this, zone);
    return std::make_unique<NodeFile>(*this, path);
}

bool NodePointStore::IsThinlySpread(const NodePoints& node) const {
    constexpr unsigned long long tooFew = 2;
    if (!WritesBehind()) return false;
    if (node.Resting() != 0) return holders_ * blocksWorthWriting > blockLimit_;
    return IsScattered() && holders_ * tooFew > blockLimit_;
}

RecordBlock* NodePointStore::Acquire(NodePoints& user) {
    if (WritesBehind() && blocksInUse_ >= blockLimit_) MakeRoom();
    if (free_ == nullptr) AddSlab();
    RecordBlock* block = free_;
    free_ = block->next;
    block->next = nullptr;
    ++blocksInUse_;
    Unlink(user);
    Enlist(user);
    return block;
}

void NodePointStore::Release(RecordBlock* first, RecordBlock* last, unsigned long long count) {
    last->next = free_;
    free_ = first;
    blocksInUse_ -= count;
}

void NodePointStore::AddSlab() {
    auto& slab = slabs_.emplace_back(std::aligned_alloc(slabBytes, slabBytes));
    if (slab == nullptr) throw std::bad_alloc();
    madvise(slab.get(), slabBytes, MADV_HUGEPAGE);  // where it cannot be, small pages do as well
    auto* const blocks = new (slab.get()) RecordBlock[blocksPerSlab];
    for (unsigned long long i = blocksPerSlab; i-- > 0;) {
        blocks[i].next = free_;
        free_ = &blocks[i];
    }
}

void NodePointStore::Enlist(NodePoints& user) {
    if (user.listed_) return;
    user.listed_ = true;
    user.older_ = newest_;
    user.newer_ = nullptr;
    (newest_ != nullptr ? newest_->newer_ : oldest_) = &user;
    newest_ = &user;
    ++holders_;
}

void NodePointStore::Forget(NodePoints& user) {
    Unlink(user);
    user.countWhenSeen_ = 0;
}

void NodePointStore::Unlink(NodePoints& user) {
    if (!user.listed_) return;
    (user.older_ != nullptr ? user.older_->newer_ : oldest_) = user.newer_;
    (user.newer_ != nullptr ? user.newer_->older_ : newest_) = user.older_;
    user.older_ = user.newer_ = nullptr;
    user.listed_ = false;
    --holders_;
}

void NodePointStore::MakeRoom() {
    // A scanner leaves a region for good: the node that has waited longest is finished. Points in
    // random order keep all nodes growing: there the large ones are worth a write. So a small node
    // that has grown since it was seen here last waits once more.
    constexpr int mostSeen = 64;
    NodePoints* largest = nullptr;
    for (int seen = 0; seen < mostSeen && oldest_ != nullptr; ++seen) {
        NodePoints& node = *oldest_;
        if (node.blocks_ >= blocksWorthWriting || node.Count() == node.countWhenSeen_)
            return node.WriteOut();
        if (largest == nullptr || node.blocks_ > largest->blocks_) largest = &node;
        node.countWhenSeen_ = node.Count();
        Unlink(node);
        Enlist(node);
    }
    // Where no node is listed the blocks in use are those of a node that is being split.
    if (largest != nullptr) largest->WriteOut();
}

ScratchLoan::ScratchLoan(NodePointStore& store) : store_(store) {
    if (store.scratches_.empty()) {
        scratch_ = std::make_unique_for_overwrite<SpillScratch>();
    } else {
        scratch_ = std::move(store.scratches_.back());
        store.scratches_.pop_back();
    }
}

ScratchLoan::~ScratchLoan() {
    store_.scratches_.push_back(std::move(scratch_));
}

}  // namespace vpc
