#include "core/geometry/VpcPlaneDef.h"

#include <cmath>

VpcPlaneDef::VpcPlaneDef(const VpcPoint3D& p1, const VpcPoint3D& p2, const VpcPoint3D& p3) {
    VpcVector3D u(p1, p2);
    VpcVector3D v(p1, p3);
    u.Normalize();
    v.Normalize();
    VpcVector3D across = u.Cross(v);
    across.Normalize();
    Set(across, p1);
}

VpcPlaneDef::VpcPlaneDef(const VpcPoint3D& point, const VpcVector3D& direction) {
    VpcVector3D unit(direction);
    unit.Normalize();
    Set(unit, point);
}

VpcPoint3D VpcPlaneDef::ClosestPointToOrigin() const {
    return VpcPoint3D(normal * -coefficients[3]);
}

bool VpcPlaneDef::IsSame(const VpcPlaneDef& other, double tolerance) const {
    for (std::size_t i = 0; i < coefficients.size(); ++i)
        if (!(std::abs(coefficients[i] - other.coefficients[i]) < tolerance)) return false;
    return true;
}

void VpcPlaneDef::Set(const VpcVector3D& unitNormal, const VpcPoint3D& point) {
    normal = unitNormal;
    coefficients = {normal.x, normal.y, normal.z, -point.ToVpcVector3D().Dot(normal)};
}
