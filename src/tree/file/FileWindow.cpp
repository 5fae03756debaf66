#include "tree/file/FileWindow.h"

#include <algorithm>

#include "tree/file/PointTreeReader.h"

namespace vpc {

namespace {
constexpr unsigned long long blockSize = 1ULL << 20;
}

const char* FileWindow::Bytes(unsigned long long position, unsigned long long count) {
    const unsigned long long size = file_.Size();
    if (position > size || count > size - position) return nullptr;
    if (position < start_ || position + count > start_ + held_) {
        const unsigned long long wanted = std::min(std::max(count, blockSize), size - position);
        if (block_.size() < wanted) block_.resize(wanted);
        held_ = 0;
        if (file_.Read(position, block_.data(), wanted) != wanted) file_.FailReading();
        start_ = position;
        held_ = wanted;
    }
    return block_.data() + (position - start_);
}

}  // namespace vpc
