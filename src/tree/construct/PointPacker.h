#pragma once

#include <array>
#include <deque>
#include <optional>

#include "tree/construct/PointFormat.h"
#include "tree/construct/RecordBlock.h"

namespace vpc {

/// Some packed points of one format.
struct PackedPoints {
    const char* records;
    unsigned format;
    unsigned recordSize;

    const char* Record(unsigned long long index) const { return records + index * recordSize; }
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
    [[nodiscard]] PackedPoints Pack(const VpcPoint3D* points, unsigned long long count);

    unsigned long long Formats() const { return formats_.size(); }
    /// References stay valid.
    const PointFormat& Format(unsigned number) const { return formats_[number]; }

private:
    std::deque<PointFormat> formats_;
    std::optional<CoordinateGrid> grid_;
    bool scanHasFormat_ = false;
    /// Copying whole words reads a little over the last point's end.
    std::array<char, most * recordSize + sizeof(std::uint64_t)> records_;
};

}  // namespace vpc
