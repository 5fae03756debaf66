#pragma once

#include <cstdint>

#include "tree/construct/RecordBlock.h"

namespace vpc {

/// A RecordBlock as it stands in the temporary file: its points' records as they are, or compact.
///
/// The points of a block lie near one another, so that many bytes of their records, the high ones
/// of coordinates above all, are the same in all of them. In a compact block such bytes stand once,
/// in the first point's record. The others follow place by place, each for all points.
namespace CompactBlock {

/// What stands before the records.
struct Header {
    /// Bit i is set where the records' bytes i differ, or where the block is not compact.
    std::uint64_t varying;
    std::uint64_t firstArrival;
    std::uint32_t format;
    std::uint16_t count;
    std::uint16_t stride;
};

/// The most bytes that a block takes.
inline constexpr unsigned mostBytes =
    sizeof(Header) + sizeof(RecordBlock::ArrivalOffset) + recordSize + sizeof RecordBlock::records;

/// Writes a block, which holds at least one point, and returns the end of its bytes.
///
/// \param to room for `mostBytes`
char* Write(const RecordBlock& block, bool isCompact, char* to);
/// Reads a block from the bytes between `from` and `end`, and returns the end of its bytes. Null
/// where no block can have been written so.
const char* Read(const char* from, const char* end, RecordBlock& block);

}  // namespace CompactBlock

}  // namespace vpc
