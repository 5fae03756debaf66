#pragma once

#include <cmath>

/// Stand-in for the host SDK's point in a plane.
class OdGePoint2d {
public:
    double x = 0.0;
    double y = 0.0;

    OdGePoint2d() = default;
    OdGePoint2d(double x0, double y0) : x(x0), y(y0) {}

    double distanceTo(const OdGePoint2d& other) const {
        const double dx = x - other.x;
        const double dy = y - other.y;
        return std::sqrt(dx * dx + dy * dy);
    }
};
