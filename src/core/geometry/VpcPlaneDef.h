#pragma once

#include <array>

#include "core/geometry/VpcPoint3D.h"
#include "core/geometry/VpcVector3D.h"

/// The plane a x + b y + c z + d = 0.
class VpcPlaneDef {
public:
    /// a, b, c and d.
    std::array<double, 4> coefficients{};
    /// The unit normal (a, b, c).
    VpcVector3D normal;

    VpcPlaneDef() = default;
    /// The plane through three points. Seen from where the normal points, they run
    /// counter-clockwise. Points on one line define no plane: everything is NaN, and no point lies
    /// on either side.
    VpcPlaneDef(const VpcPoint3D& p1, const VpcPoint3D& p2, const VpcPoint3D& p3);
    /// The plane through a point with this normal, which need not have length 1. A zero normal
    /// defines no plane either.
    VpcPlaneDef(const VpcPoint3D& point, const VpcVector3D& direction);

    /// Whether the point lies strictly on the side away from the normal.
    bool IsBehind(double x, double y, double z) const {
        return coefficients[0] * x + coefficients[1] * y + coefficients[2] * z < -coefficients[3];
    }
    /// How far the point lies from the plane, negative on the side away from the normal.
    double SignedDistance(double x, double y, double z) const {
        return coefficients[0] * x + coefficients[1] * y + coefficients[2] * z + coefficients[3];
    }
    /// The point of the plane nearest to the origin.
    VpcPoint3D ClosestPointToOrigin() const;
    /// Whether every coefficient differs by less than `tolerance`. A plane differs from the same
    /// plane with the opposite normal.
    bool IsSame(const VpcPlaneDef& other, double tolerance) const;

private:
    /// Sets everything from the unit normal and a point.
    void Set(const VpcVector3D& unitNormal, const VpcPoint3D& point);
};
