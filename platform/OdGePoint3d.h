#pragma once

#include "platform/OdGeMatrix3d.h"
#include "platform/OdGeVector3d.h"

class OdGePlane;
class OdGePoint2d;

/// Stand-in for the host SDK's point.
class OdGePoint3d {
public:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    OdGePoint3d() = default;
    OdGePoint3d(double x0, double y0, double z0) : x(x0), y(y0), z(z0) {}

    /// Multiplies the point by the upper three rows of the matrix.
    OdGePoint3d& transformBy(const OdGeMatrix3d& m) {
        return *this = {m[0][0] * x + m[0][1] * y + m[0][2] * z + m[0][3],
                        m[1][0] * x + m[1][1] * y + m[1][2] * z + m[1][3],
                        m[2][0] * x + m[2][1] * y + m[2][2] * z + m[2][3]};
    }
    /// The two coordinates, in the plane, of this point's projection into it. Callers include
    /// "platform/OdGePlane.h".
    OdGePoint2d convert2d(const OdGePlane& plane) const;

    OdGeVector3d operator-(const OdGePoint3d& from) const {
        return {x - from.x, y - from.y, z - from.z};
    }
    OdGePoint3d operator+(const OdGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }

    bool operator==(const OdGePoint3d&) const = default;
};
