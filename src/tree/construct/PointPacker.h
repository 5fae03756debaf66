#pragma once

#include <array>
#include <deque>
#include <optional>

#include "tree/construct/PointFormat.h"
#include "tree/construct/RecordBlock.h"

namespace vpc {

/// Packed points of one format, on their way into leaves.
struct PackedRun {
    const char* records;
    unsigned count;
    /// Bytes from one point to the next.
    unsigned stride;
    unsigned formatNumber;
    const PointFormat* format;
    /// Where the numbers of their arrival stand with the points: the block with that of the first.
    const RecordBlock* arrivals;
    /// Otherwise each arrives that much after the one before it: 1 where they are new, 0 where they
    /// come from a block, all before the moment of a split.
    unsigned arrivalStep;

    const char* Record(unsigned index) const { return records + std::size_t{index} * stride; }
    /// That of a record with `size` bytes, where they stand.
    unsigned long long Arrival(const char* record, unsigned size) const {
        RecordBlock::ArrivalOffset offset;
        std::memcpy(&offset, record + size, sizeof offset);
        return arrivals->firstArrival + offset;
    }
};

/// Packs points as they come and keeps every format that it has used.
class PointPacker {
public:
    /// The most points that are packed at once; they should not leave the processor's cache.
    static constexpr unsigned long long most = 1024;
    /// The number of the format that is the record of the tree file.
    static constexpr unsigned serialised = 0;

    PointPacker() : formats_(1) {}

    /// The points that follow are of another scan, whose coordinates lie on `grid` if there is one.
    void BeginScan(const std::optional<CoordinateGrid>& grid);
    /// Packs at most `most` points, and at least one. The result holds until the next call.
    [[nodiscard]] PackedRun Pack(const VpcPoint3D* points, unsigned long long count);
    /// The same for records of a scan.
    [[nodiscard]] PackedRun Pack(const ScanRecords& records);
    /// The points of a block without the first `skipped`.
    [[nodiscard]] PackedRun RunOf(const RecordBlock& block, unsigned skipped = 0) const;

    unsigned long long Formats() const { return formats_.size(); }
    /// References stay valid.
    const PointFormat& Format(unsigned number) const { return formats_[number]; }

private:
    /// `pack` packs `count` points in a format, or makes it wider and returns false.
    template <class Packing>
    [[nodiscard]] PackedRun PackedBy(const Packing& pack, unsigned long long count);

    std::deque<PointFormat> formats_;
    std::optional<CoordinateGrid> grid_;
    bool scanHasFormat_ = false;
    /// Copying whole words reads a little over the last point's end.
    std::array<char, most * recordSize + RecordBlock::wordSize> records_;
};

}  // namespace vpc
