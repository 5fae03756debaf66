#include "tree/construct/NodePoints.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "core/util/FileBufferStream.h"
#include "core/util/FileTools.h"

namespace vpc {

namespace {

/// Lends a scratch block of the store and gives it back.
class ScratchLoan {
public:
    explicit ScratchLoan(NodePointStore& store) : store_(store), scratch_(store.TakeScratch()) {}
    ~ScratchLoan() { store_.ReturnScratch(std::move(scratch_)); }
    ScratchLoan(const ScratchLoan&) = delete;
    ScratchLoan& operator=(const ScratchLoan&) = delete;
    char* get() { return scratch_.get(); }

private:
    NodePointStore& store_;
    NodePointStore::Scratch scratch_;
};

}  // namespace

NodePoints::NodePoints(NodePointStore& store, std::string path)
    : store_(&store), path_(std::move(path)) {
}

NodePoints::~NodePoints() {
    Clear();
}

void NodePoints::AddBlock() {
    RecordBlock* block = store_->Acquire(*this);  // may write out and free this node's own blocks
    (last_ != nullptr ? last_->next : first_) = block;
    last_ = block;
    ++blocks_;
    cursor_ = block->records;
    roomInTail_ = RecordBlock::capacity;
}

bool NodePoints::WriteOut() {
    FileBufferStream stream;
    if (!stream.StreamOpen(FileTools::FromNativePath(path_), FileModeWrite, true)) return false;
    hasFile_ = true;
    ScratchLoan scratch(*store_);
    VisitMemory(scratch.get(), [&stream](char* records, unsigned long long count) {
        stream.WriteCharArray2File(records, count * recordSize);
    });
    stream.StreamClose();
    if (!stream.IsStreamGood()) {
        // A part of the records may be in the file: back to what it held before.
        std::error_code ignored;
        std::filesystem::resize_file(path_, inFile_ * recordSize, ignored);
        return false;
    }
    inFile_ += inMemory_;
    ClearMemory();
    return true;
}

bool NodePoints::Visit(const std::function<void(char*, unsigned long long)>& visit) {
    ScratchLoan scratch(*store_);
    const bool whole = VisitFile(scratch.get(), visit);
    VisitMemory(scratch.get(), visit);
    return whole;
}

bool NodePoints::VisitFile(char* scratch,
                           const std::function<void(char*, unsigned long long)>& visit) {
    if (inFile_ == 0) return true;
    FileBufferStream stream;
    if (!stream.StreamOpen(FileTools::FromNativePath(path_), FileModeRead)) return false;
    for (unsigned long long done = 0; done < inFile_;) {
        const auto count = std::min(inFile_ - done, NodePointStore::scratchRecords);
        stream.ReadCharArray2File(scratch, count * recordSize);
        if (!stream.IsStreamGood()) return false;
        visit(scratch, count);
        done += count;
    }
    return true;
}

void NodePoints::VisitMemory(char* scratch,
                             const std::function<void(char*, unsigned long long)>& visit) {
    unsigned long long left = inMemory_;
    unsigned long long gathered = 0;
    for (const RecordBlock* block = first_; block != nullptr; block = block->next) {
        const auto count = std::min(left, RecordBlock::capacity);
        if (gathered + count > NodePointStore::scratchRecords) {
            visit(scratch, gathered);
            gathered = 0;
        }
        std::memcpy(scratch + gathered * recordSize, block->records, count * recordSize);
        gathered += count;
        left -= count;
    }
    if (gathered != 0) visit(scratch, gathered);
}

void NodePoints::Clear() {
    ClearMemory();
    RemoveFile();
    inFile_ = 0;
}

void NodePoints::ClearMemory() {
    if (first_ != nullptr) store_->Release(first_, last_, blocks_);
    store_->Forget(*this);
    first_ = last_ = nullptr;
    cursor_ = nullptr;
    roomInTail_ = 0;
    blocks_ = inMemory_ = 0;
}

void NodePoints::RemoveFile() {
    if (hasFile_) std::remove(path_.c_str());
    hasFile_ = false;
}

void NodePoints::TakeOver(NodePoints& other) {
    Clear();
    store_->Forget(other);
    hasFile_ = std::exchange(other.hasFile_, false);
    inFile_ = std::exchange(other.inFile_, 0);
    inMemory_ = std::exchange(other.inMemory_, 0);
    blocks_ = std::exchange(other.blocks_, 0);
    roomInTail_ = std::exchange(other.roomInTail_, 0);
    cursor_ = std::exchange(other.cursor_, nullptr);
    first_ = std::exchange(other.first_, nullptr);
    last_ = std::exchange(other.last_, nullptr);
}

bool NodePoints::RenameFileFrom(const std::string& oldPath) {
    return !hasFile_ || std::rename(oldPath.c_str(), path_.c_str()) == 0;
}

}  // namespace vpc
