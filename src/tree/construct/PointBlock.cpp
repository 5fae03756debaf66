#include "tree/construct/PointBlock.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "tree/file/PointTreeLayout.h"

namespace vpc {

namespace {

/// Records that are collected before they are written: some 200 KiB.
constexpr unsigned long long collectionCapacity = 4096;

}  // namespace

PointBlock::PointBlock(FileBufferStream& stream, DirectRanges* direct, const VpcConstructNode& node,
                       PointBlock* parent, SamplePattern* pattern)
    : stream_(stream),
      direct_(direct),
      node_(node),
      parent_(parent),
      pattern_(pattern),
      position_(node.blockPosition) {
    if (direct_ != nullptr) range_ = direct_->Begin(position_);
}

void PointBlock::WriteHeader() {
    const std::array<unsigned long long, 2> words{node_.Level(), node_.PointsOnDisk()};
    static_assert(sizeof words == PointTreeLayout::pointBlockHeaderSize);
    WriteBytes(reinterpret_cast<const char*>(words.data()), sizeof words);
}

void PointBlock::WriteBytes(const char* bytes, unsigned long long size) {
    if (range_) return range_->Append(bytes, size);
    stream_.StreamSeek(position_);
    stream_.WriteCharArray2File(bytes, size);
    position_ += size;
}

void PointBlock::Write(const char* records, unsigned long long count) {
    if (written_ == 0) WriteHeader();
    WriteBytes(records, count * recordSize);
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
    if (written_ == 0) WriteHeader();
    if (range_) direct_->End(*std::exchange(range_, std::nullopt));
}

}  // namespace vpc
