#include "tree/construct/PointBlock.h"

#include <algorithm>
#include <cstring>

#include "tree/file/PointTreeLayout.h"

namespace vpc {

namespace {

/// Records that are collected before they are written: some 200 KiB.
constexpr unsigned long long collectionCapacity = 4096;

}  // namespace

PointBlock::PointBlock(FileBufferStream& stream, const VpcConstructNode& node, PointBlock* parent,
                       SamplePattern* pattern)
    : stream_(stream), node_(node), parent_(parent), pattern_(pattern) {
}

void PointBlock::GoOn() {
    if (written_ != 0) {
        stream_.StreamSeek(node_.blockPosition + PointTreeLayout::pointBlockHeaderSize +
                           written_ * recordSize);
        return;
    }
    stream_.StreamSeek(node_.blockPosition);
    stream_.StreamWriteUint64(node_.Level());
    stream_.StreamWriteUint64(node_.PointsOnDisk());
}

void PointBlock::Write(const char* records, unsigned long long count) {
    GoOn();
    stream_.WriteCharArray2File(records, count * recordSize);
    const unsigned long long begin = written_;
    written_ += count;
    if (parent_ == nullptr) return;
    pattern_->ForEachKept(node_.PointsOnDisk(), begin, written_, [&](unsigned long long i) {
        parent_->Collect(records + (i - begin) * recordSize);
    });
}

void PointBlock::Collect(const char* record) {
    if (collection_ == nullptr) {
        const auto capacity = std::min(collectionCapacity, node_.PointsOnDisk());
        collection_ = std::make_unique_for_overwrite<char[]>(capacity * recordSize);
    }
    std::memcpy(collection_.get() + collected_ * recordSize, record, recordSize);
    ++collected_;
    if (collected_ == std::min(collectionCapacity, node_.PointsOnDisk())) WriteCollected();
}

void PointBlock::WriteCollected() {
    const unsigned long long count = std::exchange(collected_, 0);
    if (count != 0) Write(collection_.get(), count);
}

void PointBlock::Finish() {
    WriteCollected();
    if (written_ == 0) GoOn();
}

}  // namespace vpc
