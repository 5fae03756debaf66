#include "core/util/DirectRange.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace vpc {

namespace {

constexpr std::size_t page = DirectWriter::pageSize;

}  // namespace

DirectRange::DirectRange(DirectWriter& writer, unsigned long long position)
    : writer_(&writer), position_(position / page * page), begin_(position % page), end_(begin_) {
}

void DirectRange::Append(const char* data, unsigned long long size) {
    while (size != 0) {
        if (part_ == nullptr) part_ = writer_->Take();
        const auto some = std::min<unsigned long long>(size, DirectWriter::partSize - end_);
        std::memcpy(part_->bytes.get() + end_, data, some);
        end_ += some;
        data += some;
        size -= some;
        if (end_ == DirectWriter::partSize) WritePart();
    }
}

void DirectRange::Finish() {
    if (part_ != nullptr) WritePart();
}

void DirectRange::WritePart() {
    const std::size_t firstPage = (begin_ + page - 1) / page * page;
    const std::size_t lastPage = end_ / page * page;
    if (firstPage >= lastPage) {
        WriteEnd(begin_, end_);
        writer_->PutBack(std::move(part_));
    } else {
        WriteEnd(begin_, firstPage);
        WriteEnd(lastPage, end_);
        part_->begin = firstPage;
        part_->size = lastPage - firstPage;
        part_->position = position_ + firstPage;
        writer_->Write(std::move(part_));
    }
    position_ += DirectWriter::partSize;
    begin_ = end_ = 0;
}

void DirectRange::WriteEnd(std::size_t begin, std::size_t end) {
    if (begin != end)
        writer_->WriteThroughCache(part_->bytes.get() + begin, end - begin, position_ + begin);
}

}  // namespace vpc
