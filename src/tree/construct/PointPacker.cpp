#include "tree/construct/PointPacker.h"

namespace vpc {

void PointPacker::BeginScan(const std::optional<CoordinateGrid>& grid) {
    grid_ = grid;
    scanHasFormat_ = false;
}

PackedRun PointPacker::Pack(const VpcPoint3D* points, unsigned long long count) {
    if (!scanHasFormat_) formats_.emplace_back(*points, grid_);
    return PackedBy(
        [&](PointFormat& format) { return format.PackOrWiden(points, count, records_.data()); },
        count);
}

PackedRun PointPacker::Pack(const ScanRecords& records) {
    if (!scanHasFormat_ || !formats_.back().IsFor(records))
        formats_.emplace_back(records.example, records.grid);
    return PackedBy(
        [&](PointFormat& format) { return format.PackOrWiden(records, records_.data()); },
        records.count);
}

template <class Packing>
PackedRun PointPacker::PackedBy(const Packing& pack, unsigned long long count) {
    scanHasFormat_ = true;
    if (PointFormat same = formats_.back(); !pack(same)) {
        // Earlier points stay packed as they are, so the wider format is one more.
        formats_.push_back(same);
        while (!pack(formats_.back())) {
        }
    }
    return {records_.data(),
            static_cast<unsigned>(count),
            formats_.back().RecordSize(),
            static_cast<unsigned>(formats_.size() - 1),
            &formats_.back(),
            nullptr,
            1};
}

PackedRun PointPacker::RunOf(const RecordBlock& block, unsigned skipped) const {
    const PointFormat& format = formats_[block.format];
    return {block.Record(skipped),
            block.count - skipped,
            block.stride,
            block.format,
            &format,
            block.HasArrivals(format) ? &block : nullptr,
            0};
}

}  // namespace vpc
