#pragma once

#include "platform/OdGeVector2d.h"

/// Stand-in for the host SDK's point in a plane.
class OdGePoint2d {
public:
    double x = 0.0;
    double y = 0.0;

    OdGePoint2d() = default;
    OdGePoint2d(double x0, double y0) : x(x0), y(y0) {}

    OdGeVector2d operator-(const OdGePoint2d& from) const { return {x - from.x, y - from.y}; }
    double distanceTo(const OdGePoint2d& other) const { return (*this - other).length(); }

    bool operator==(const OdGePoint2d&) const = default;
};
