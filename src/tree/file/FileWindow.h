#pragma once

#include <vector>

#include <wx/string.h>

#include "core/util/FileBufferStream.h"

namespace vpc {

/// Shows any range of a file in memory, reading it in large blocks: made for a reader that goes
/// through the file from front to back. Holds one block, or one range where that is larger.
class FileWindow {
public:
    /// Opens the file; one that does not open has the size 0.
    explicit FileWindow(const wxString& path);

    unsigned long long Size() const { return size_; }
    /// The `count` bytes at `position`, valid until the next call; null where they do not lie
    /// within the file or cannot be read.
    const char* Bytes(unsigned long long position, unsigned long long count);

private:
    FileBufferStream stream_;
    unsigned long long size_ = 0;
    unsigned long long start_ = 0;
    unsigned long long held_ = 0;
    std::vector<char> block_;
};

}  // namespace vpc
