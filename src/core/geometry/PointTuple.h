#pragma once

#include <array>

#include "core/geometry/VpcPoint3D.h"

namespace vpc {

/// A point and its position in a list, three times over. The index sorts work on such entries.
struct PointTuple {
    VpcPoint3D point;
    std::array<unsigned long long, 3> indices{};
};

}  // namespace vpc

// Orders of the index sorts.
bool myPointTupleSortX(const vpc::PointTuple& a, const vpc::PointTuple& b);
bool myPointTupleSortY(const vpc::PointTuple& a, const vpc::PointTuple& b);
bool myPointTupleSortZ(const vpc::PointTuple& a, const vpc::PointTuple& b);
