#include "tree/construct/PointPacker.h"

namespace vpc {

void PointPacker::BeginScan(const std::optional<CoordinateGrid>& grid) {
    grid_ = grid;
    scanHasFormat_ = false;
}

PackedRun PointPacker::Pack(const VpcPoint3D* points, unsigned long long count) {
    if (!scanHasFormat_) formats_.emplace_back(*points, grid_);
    scanHasFormat_ = true;
    if (PointFormat same = formats_.back(); !same.PackOrWiden(points, count, records_.data())) {
        // Earlier points stay packed as they are, so the wider format is one more.
        formats_.push_back(same);
        while (!formats_.back().PackOrWiden(points, count, records_.data())) {
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
