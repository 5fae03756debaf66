#include "core/geometry/VpcPlaneDef.h"

VpcPlaneDef::VpcPlaneDef(const VpcPoint3D& p1, const VpcPoint3D& p2, const VpcPoint3D& p3) {
    VpcVector3D u(p1, p2);
    VpcVector3D v(p1, p3);
    u.Normalize();
    v.Normalize();
    normal = u.Cross(v);
    normal.Normalize();
    const double d = -p1.ToVpcVector3D().Dot(normal);
    coefficients = {normal.x, normal.y, normal.z, d};
}
