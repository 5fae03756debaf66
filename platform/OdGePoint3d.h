#pragma once

/// Stand-in for the host SDK's point.
class OdGePoint3d {
public:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    OdGePoint3d() = default;
    OdGePoint3d(double x0, double y0, double z0) : x(x0), y(y0), z(z0) {}

    bool operator==(const OdGePoint3d&) const = default;
};
