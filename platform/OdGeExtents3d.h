#pragma once

#include <algorithm>

#include "platform/OdGePoint3d.h"

/// Stand-in for the host SDK's box; without a point, its minimum is above its maximum.
class OdGeExtents3d {
public:
    OdGeExtents3d() = default;
    OdGeExtents3d(const OdGePoint3d& min, const OdGePoint3d& max) : min_(min), max_(max) {}

    const OdGePoint3d& minPoint() const { return min_; }
    const OdGePoint3d& maxPoint() const { return max_; }
    bool isValidExtents() const { return min_.x <= max_.x && min_.y <= max_.y && min_.z <= max_.z; }

    void set(const OdGePoint3d& min, const OdGePoint3d& max) { *this = {min, max}; }
    void addPoint(const OdGePoint3d& p) {
        min_ = {std::min(min_.x, p.x), std::min(min_.y, p.y), std::min(min_.z, p.z)};
        max_ = {std::max(max_.x, p.x), std::max(max_.y, p.y), std::max(max_.z, p.z)};
    }

private:
    OdGePoint3d min_{1e20, 1e20, 1e20};
    OdGePoint3d max_{-1e20, -1e20, -1e20};
};
