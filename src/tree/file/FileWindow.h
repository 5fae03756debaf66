#pragma once

#include <vector>

namespace vpc {

class PointTreeReader;

/// Shows any range of a tree file in memory. It reads the file in large blocks, which suits a pass
/// from front to back, and holds one block, or one range where that is larger.
class FileWindow {
public:
    /// \param file must outlive the window
    explicit FileWindow(PointTreeReader& file) : file_(file) {}

    /// The `count` bytes at `position`, valid until the next call; null where they do not lie
    /// within the file. Throws IoError where they cannot be read.
    const char* Bytes(unsigned long long position, unsigned long long count);

private:
    PointTreeReader& file_;
    unsigned long long start_ = 0;
    unsigned long long held_ = 0;
    std::vector<char> block_;
};

}  // namespace vpc
