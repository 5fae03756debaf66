#include "tree/construct/PointPacker.h"

namespace vpc {

void PointPacker::BeginScan(const std::optional<CoordinateGrid>& grid) {
    grid_ = grid;
    scanHasFormat_ = false;
}

PackedPoints PointPacker::Pack(const VpcPoint3D* points, unsigned long long count) {
    if (!scanHasFormat_) formats_.emplace_back(*points, grid_);
    scanHasFormat_ = true;
    if (PointFormat same = formats_.back(); !same.PackOrWiden(points, count, records_.data())) {
        // Earlier points stay packed as they are, so the wider format is one more.
        formats_.push_back(same);
        while (!formats_.back().PackOrWiden(points, count, records_.data())) {
        }
    }
    return {records_.data(), static_cast<unsigned>(formats_.size() - 1),
            formats_.back().RecordSize()};
}

}  // namespace vpc
