#pragma once

#include "platform/OdGePoint3d.h"

/// Stand-in for the host SDK's box. Before it is set, its minimum is above its maximum.
class OdGeExtents3d {
public:
    OdGeExtents3d() = default;

    const OdGePoint3d& minPoint() const { return min_; }
    const OdGePoint3d& maxPoint() const { return max_; }
    void set(const OdGePoint3d& min, const OdGePoint3d& max) {
        min_ = min;
        max_ = max;
    }

private:
    OdGePoint3d min_{1e20, 1e20, 1e20};
    OdGePoint3d max_{-1e20, -1e20, -1e20};
};
