#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "core/util/DirectRange.h"

namespace vpc {

/// The ranges of a file that are written past the system's cache. Where one begins at the place at
/// which one of the last ended, both are written as one: a disk takes few large writes in less time
/// than many small ones.
class DirectRanges {
public:
    explicit DirectRanges(std::unique_ptr<DirectWriter> writer) : writer_(std::move(writer)) {}

    /// A range from `position` on, which has to end before this object does.
    [[nodiscard]] DirectRange Begin(unsigned long long position);
    /// Takes a range whose bytes are all appended.
    void End(DirectRange range);
    /// Writes what is left and waits until all is written. Throws IoError when some of it could not
    /// be.
    void Finish();

private:
    std::unique_ptr<DirectWriter> writer_;
    /// Those that may go on, the one that ended last at the end.
    std::vector<DirectRange> ended_;
};

}  // namespace vpc
