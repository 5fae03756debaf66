#include "tree/file/FileWindow.h"

#include <algorithm>

namespace vpc {

namespace {
constexpr unsigned long long blockSize = 1ULL << 20;
}

FileWindow::FileWindow(const wxString& path) {
    if (stream_.StreamOpen(path, FileModeRead, false)) size_ = stream_.StreamSize();
}

const char* FileWindow::Bytes(unsigned long long position, unsigned long long count) {
    if (position > size_ || count > size_ - position) return nullptr;
    if (position < start_ || position + count > start_ + held_) {
        const unsigned long long wanted = std::min(std::max(count, blockSize), size_ - position);
        if (block_.size() < wanted) block_.resize(wanted);
        stream_.StreamClearState();
        stream_.StreamSeek(position);
        stream_.ReadCharArray2File(block_.data(), wanted);
        start_ = position;
        held_ = stream_.IsStreamGood() ? wanted : 0;
        if (held_ == 0) return nullptr;
    }
    return block_.data() + (position - start_);
}

}  // namespace vpc
