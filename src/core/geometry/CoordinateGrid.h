#pragma once

#include <array>

namespace vpc {

/// The grid that a scan's coordinates lie on: a coordinate is `whole * scale + offset` of its axis,
/// computed in doubles, where `whole` is an integer of 32 bits. LAS files store their points so.
struct CoordinateGrid {
    std::array<double, 3> scale;
    std::array<double, 3> offset;

    bool operator==(const CoordinateGrid&) const = default;
};

}  // namespace vpc
