#pragma once

#include <cmath>

/// Stand-in for the host SDK's vector in a plane.
class OdGeVector2d {
public:
    double x = 0.0;
    double y = 0.0;

    OdGeVector2d() = default;
    OdGeVector2d(double x0, double y0) : x(x0), y(y0) {}

    double length() const { return std::sqrt(x * x + y * y); }

    bool operator==(const OdGeVector2d&) const = default;
};
