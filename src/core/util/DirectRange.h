#pragma once

#include "core/util/DirectWriter.h"

namespace vpc {

/// A range of a file that is written from its beginning to its end: whole pages past the system's
/// cache, and through it the ends, whose pages may be those of other ranges, too.
class DirectRange {
public:
    /// \param writer has to live longer
    DirectRange(DirectWriter& writer, unsigned long long position);

    /// Writes the next bytes. Throws as DirectWriter does.
    void Append(const char* data, unsigned long long size);
    /// Writes what is left. Without it the last bytes are not written.
    void Finish();
    /// Where the next byte stands in the file.
    unsigned long long End() const { return position_ + end_; }

private:
    void WritePart();
    void WriteEnd(std::size_t begin, std::size_t end);

    DirectWriter* writer_;
    /// The bytes `begin_` to `end_` - 1 are filled. The first of all stands at `position_` in the
    /// file.
    DirectWriter::PartHandle part_;
    unsigned long long position_;
    std::size_t begin_;
    std::size_t end_;
};

}  // namespace vpc
