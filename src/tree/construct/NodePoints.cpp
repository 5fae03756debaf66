#include "tree/construct/NodePoints.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include <wx/translation.h>

#include "core/util/FileBufferStream.h"
#include "core/util/FileTools.h"
#include "core/util/IoError.h"

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

void NodePoints::WriteOut() {
    if (store_->WritesBehind())
        AppendToSpill();
    else
        AppendToFile();
}

void NodePoints::AppendToFile() {
    FileBufferStream stream;
    const std::string& file = HasFile() ? file_ : path_;
    if (stream.StreamOpen(FileTools::FromNativePath(file), FileModeWrite, true)) {
        file_ = file;
        ScratchLoan scratch(*store_);
        VisitMemory(scratch.get(), [&stream](char* records, unsigned long long count) {
            stream.WriteCharArray2File(records, count * recordSize);
        });
        stream.StreamClose();
    }
    if (!stream.IsStreamGood()) {
        // Some of the records may be in the file: cut it back to what it held before.
        std::error_code ignored;
        if (HasFile()) std::filesystem::resize_file(file, writtenOut_ * recordSize, ignored);
        throw IoError(FileTools::FromNativePath(file), wxGetTranslation("cannot be written"),
                      stream.SystemError());
    }
    writtenOut_ += inMemory_;
    ClearMemory();
}

void NodePoints::AppendToSpill() {
    if (inMemory_ == 0) return;
    std::vector<iovec> parts;
    parts.reserve(blocks_);
    unsigned long long left = inMemory_;
    for (RecordBlock* block = first_; block != nullptr; block = block->next) {
        const auto count = std::min(left, RecordBlock::capacity);
        parts.push_back({block->records, count * recordSize});
        left -= count;
    }
    pieces_.push_back(store_->Spill().Write(parts));
    writtenOut_ += inMemory_;
    ClearMemory();
}

void NodePoints::Visit(const Visitor& visit) {
    ScratchLoan scratch(*store_);
    if (store_->WritesBehind())
        VisitSpill(scratch.get(), visit);
    else
        VisitFile(scratch.get(), visit);
    VisitMemory(scratch.get(), visit);
}

void NodePoints::VisitFile(char* scratch, const Visitor& visit) {
    if (writtenOut_ == 0) return;
    const wxString file = FileTools::FromNativePath(file_);
    FileBufferStream stream;
    stream.StreamOpen(file, FileModeRead);  // where that fails, so does the first read
    for (unsigned long long done = 0; done < writtenOut_;) {
        const auto count = std::min(writtenOut_ - done, NodePointStore::scratchRecords);
        stream.ReadCharArray2File(scratch, count * recordSize);
        if (!stream.IsStreamGood())
            throw IoError(file, wxGetTranslation("cannot be read"), stream.SystemError());
        visit(scratch, count);
        done += count;
    }
}

void NodePoints::VisitSpill(char* scratch, const Visitor& visit) {
    constexpr unsigned long long scratchSize = NodePointStore::scratchRecords * recordSize;
    unsigned long long filled = 0;
    const auto passOn = [&] {
        if (filled != 0) visit(scratch, filled / recordSize);
        filled = 0;
    };
    for (const SpillFile::Piece& piece : pieces_) {
        for (unsigned long long done = 0; done < piece.size;) {
            if (filled == scratchSize) passOn();
            const auto size = std::min(piece.size - done, scratchSize - filled);
            store_->Spill().Read(piece.position + done, scratch + filled, size);
            filled += size;
            done += size;
        }
    }
    passOn();
}

void NodePoints::VisitMemory(char* scratch, const Visitor& visit) {
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
    RemoveWrittenOut();
}

void NodePoints::ClearMemory() {
    if (first_ != nullptr) store_->Release(first_, last_, blocks_);
    store_->Forget(*this);
    first_ = last_ = nullptr;
    cursor_ = nullptr;
    roomInTail_ = 0;
    blocks_ = inMemory_ = 0;
}

void NodePoints::RemoveWrittenOut() {
    if (HasFile()) std::remove(file_.c_str());
    file_.clear();
    for (const SpillFile::Piece& piece : pieces_) store_->Spill().Free(piece);
    pieces_.clear();
    writtenOut_ = 0;
}

void NodePoints::TakeOver(NodePoints& other) {
    Clear();
    store_->Forget(other);
    file_ = std::exchange(other.file_, {});
    pieces_ = std::exchange(other.pieces_, {});
    writtenOut_ = std::exchange(other.writtenOut_, 0);
    inMemory_ = std::exchange(other.inMemory_, 0);
    blocks_ = std::exchange(other.blocks_, 0);
    roomInTail_ = std::exchange(other.roomInTail_, 0);
    cursor_ = std::exchange(other.cursor_, nullptr);
    first_ = std::exchange(other.first_, nullptr);
    last_ = std::exchange(other.last_, nullptr);
}

void NodePoints::RenameFile() {
    if (file_ != path_) RenameFileFrom(file_);
}

void NodePoints::RenameFileFrom(const std::string& oldPath) {
    if (!HasFile()) return;
    if (std::rename(oldPath.c_str(), path_.c_str()) != 0)
        throw IoError(FileTools::FromNativePath(oldPath), wxGetTranslation("cannot be renamed"),
                      errno);
    file_ = path_;
}

}  // namespace vpc
