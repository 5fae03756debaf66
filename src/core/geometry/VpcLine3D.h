#pragma once

#include "core/geometry/VpcPoint3D.h"
#include "core/geometry/VpcVector3D.h"

/// The line through a point along a direction, which need not have length 1.
class VpcLine3D {
public:
    VpcPoint3D origin;
    VpcVector3D direction;

    VpcLine3D() = default;
    VpcLine3D(const VpcPoint3D& point, const VpcVector3D& along)
        : origin(point), direction(along) {}

    /// Distance from `p` to the nearest point of the infinite line; distance to the line's origin
    /// when the direction is zero.
    double DistanceTo(const VpcPoint3D& p) const {
        const double length = direction.Magnitude();
        if (length == 0.0) return origin.DistanceTo(p);
        return direction.Cross(VpcVector3D(origin, p)).Magnitude() / length;
    }
};
