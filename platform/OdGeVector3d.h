#pragma once

#include <cmath>

/// Stand-in for the host SDK's vector.
class OdGeVector3d {
public:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    OdGeVector3d() = default;
    OdGeVector3d(double x0, double y0, double z0) : x(x0), y(y0), z(z0) {}

    double length() const { return std::sqrt(dotProduct(*this)); }
    double dotProduct(const OdGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
    OdGeVector3d crossProduct(const OdGeVector3d& v) const {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }
    /// The vector scaled to length 1; a zero vector stays zero.
    OdGeVector3d normal() const {
        const double size = length();
        return size > 0.0 ? OdGeVector3d(x / size, y / size, z / size) : *this;
    }

    OdGeVector3d operator*(double factor) const { return {x * factor, y * factor, z * factor}; }
};
