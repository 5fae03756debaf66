#pragma once

#include <cstdint>
#include <cstring>

#include "tree/construct/PointFormat.h"

namespace vpc {

/// Size of one point in the tree file, in bytes.
inline constexpr unsigned long long recordSize = VpcPoint3D::SerializeDiskSize();

/// Some packed points of one node and of one format: a page of memory. A node's points are a chain
/// of such blocks.
///
/// Behind its fields a point may have the number of its arrival, less that of the block's first
/// point.
struct RecordBlock {
    static constexpr unsigned size = 4096;
    using ArrivalOffset = std::uint32_t;

    RecordBlock* next;
    std::uint64_t firstArrival;
    /// The format's number in the store.
    std::uint32_t format;
    std::uint16_t count;
    /// Bytes from one point to the next.
    std::uint16_t stride;
    char records[size - 24];

    /// Points are copied in whole words, so the last one may reach a little over its end.
    static constexpr unsigned wordSize = 16;
    static constexpr unsigned Capacity(unsigned stride) {
        return static_cast<unsigned>((sizeof records - wordSize) / stride);
    }
    const char* Record(unsigned index) const { return records + std::size_t{index} * stride; }
    bool HasArrivals(const PointFormat& itsFormat) const {
        return stride != itsFormat.RecordSize();
    }
};
static_assert(sizeof(RecordBlock) == RecordBlock::size);

/// Copies a packed point, rounded up to whole words: a loop over one or two words is faster than a
/// call.
inline void copyPacked(char* to, const char* from, unsigned bytes) {
    for (unsigned done = 0; done < bytes; done += RecordBlock::wordSize)
        std::memcpy(to + done, from + done, RecordBlock::wordSize);
}

}  // namespace vpc
