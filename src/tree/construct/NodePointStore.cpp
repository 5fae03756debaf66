#include "tree/construct/NodePointStore.h"

#include <algorithm>

#include "tree/construct/NodePoints.h"

namespace vpc {

namespace {

constexpr unsigned long long blocksPerSlab = 256;

unsigned long long blocksWithin(unsigned long long budget) {
    if (budget == 0) return 0;
    // Below one slab there is nothing to gain, and a node needs a block of its own.
    return std::max(budget / sizeof(RecordBlock), blocksPerSlab);
}

}  // namespace

NodePointStore::NodePointStore(unsigned long long budget, const std::string& spillPath)
    : blockLimit_(blocksWithin(budget)) {
    if (WritesBehind()) spill_.emplace(spillPath);
}

NodePointStore::~NodePointStore() = default;

RecordBlock* NodePointStore::Acquire(NodePoints& user) {
    if (WritesBehind() && blocksInUse_ >= blockLimit_) WriteOutOldest();
    if (free_ == nullptr) AddSlab();
    RecordBlock* block = free_;
    free_ = block->next;
    block->next = nullptr;
    ++blocksInUse_;
    MoveToBack(user);
    return block;
}

void NodePointStore::Release(RecordBlock* first, RecordBlock* last, unsigned long long count) {
    last->next = free_;
    free_ = first;
    blocksInUse_ -= count;
}

void NodePointStore::Forget(NodePoints& user) {
    if (user.listed_) Unlink(user);
}

NodePointStore::Scratch NodePointStore::TakeScratch() {
    if (scratches_.empty())
        return std::make_unique_for_overwrite<char[]>(scratchRecords * recordSize);
    Scratch scratch = std::move(scratches_.back());
    scratches_.pop_back();
    return scratch;
}

void NodePointStore::AddSlab() {
    auto& slab = slabs_.emplace_back(std::make_unique_for_overwrite<RecordBlock[]>(blocksPerSlab));
    for (unsigned long long i = 0; i < blocksPerSlab; ++i) {
        slab[i].next = free_;
        free_ = &slab[i];
    }
}

void NodePointStore::MoveToBack(NodePoints& user) {
    if (newest_ == &user) return;
    if (user.listed_) Unlink(user);
    user.listed_ = true;
    user.older_ = newest_;
    user.newer_ = nullptr;
    (newest_ != nullptr ? newest_->newer_ : oldest_) = &user;
    newest_ = &user;
}

void NodePointStore::Unlink(NodePoints& user) {
    (user.older_ != nullptr ? user.older_->newer_ : oldest_) = user.newer_;
    (user.newer_ != nullptr ? user.newer_->older_ : newest_) = user.older_;
    user.older_ = user.newer_ = nullptr;
    user.listed_ = false;
}

void NodePointStore::WriteOutOldest() {
    // Where no node is listed the blocks in use are those of a node that is being split.
    if (oldest_ != nullptr) oldest_->WriteOut();
}

}  // namespace vpc
