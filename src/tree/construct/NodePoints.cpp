#include "tree/construct/NodePoints.h"

#include <utility>

namespace vpc {

void NodePoints::AddBlock(unsigned format, unsigned size, unsigned long long firstArrival) {
    CountTail();
    const auto stride =
        static_cast<unsigned>(size + (keepsArrivals_ ? sizeof(RecordBlock::ArrivalOffset) : 0));
    RecordBlock* block = store_->Acquire(*this);  // may write out and free this node's own blocks
    (last_ != nullptr ? last_->next : first_) = block;
    last_ = block;
    ++blocks_;
    block->firstArrival = firstArrival;
    block->format = format;
    block->stride = static_cast<std::uint16_t>(stride);
    cursor_ = block->records;
    room_ = RecordBlock::Capacity(stride);
    tailFormat_ = format;
    tailStride_ = stride;
    tailArrival_ = firstArrival;
}

void NodePoints::CountTail() {
    if (last_ != nullptr)
        last_->count = static_cast<std::uint16_t>(RecordBlock::Capacity(tailStride_) - room_);
}

void NodePoints::WriteOut(const std::string& path) {
    if (rest_ == nullptr) rest_ = store_->MakeRestingPoints(path, zone_);
    CountTail();
    rest_->Append(first_);
    const unsigned long long restingBlocks = restingBlocks_ + blocks_;
    resting_ = count_;
    ClearMemory();
    restingBlocks_ = restingBlocks;
}

void NodePoints::Visit(const Visitor& visit) {
    // The store must not write out what is being visited.
    store_->Forget(*this);
    if (rest_ != nullptr) rest_->Visit(visit, false);
    VisitMemory(visit);
    if (first_ != nullptr) store_->Enlist(*this);
}

void NodePoints::VisitAndClear(const Visitor& visit) {
    store_->Forget(*this);
    if (rest_ != nullptr) rest_->Visit(visit, true);
    VisitMemory(visit);
    Clear();
}

void NodePoints::VisitMemory(const Visitor& visit) {
    CountTail();
    for (const RecordBlock* block = first_; block != nullptr; block = block->next) visit(*block);
}

void NodePoints::Clear() {
    ClearMemory();
    rest_.reset();
    count_ = resting_ = restingBlocks_ = 0;
    keepsArrivals_ = false;
}

void NodePoints::ClearMemory() {
    if (first_ != nullptr) store_->Release(first_, last_, blocks_);
    store_->Forget(*this);
    first_ = last_ = nullptr;
    cursor_ = nullptr;
    room_ = 0;
    blocks_ = 0;
    count_ = resting_;
}

void NodePoints::TakeOver(NodePoints& other) {
    Clear();
    store_->Forget(other);
    rest_ = std::move(other.rest_);
    cursor_ = std::exchange(other.cursor_, nullptr);
    room_ = std::exchange(other.room_, 0);
    tailFormat_ = other.tailFormat_;
    tailStride_ = other.tailStride_;
    tailArrival_ = other.tailArrival_;
    keepsArrivals_ = std::exchange(other.keepsArrivals_, false);
    count_ = std::exchange(other.count_, 0);
    last_ = std::exchange(other.last_, nullptr);
    first_ = std::exchange(other.first_, nullptr);
    blocks_ = std::exchange(other.blocks_, 0);
    resting_ = std::exchange(other.resting_, 0);
    restingBlocks_ = std::exchange(other.restingBlocks_, 0);
    if (first_ != nullptr) store_->Enlist(*this);
}

}  // namespace vpc
