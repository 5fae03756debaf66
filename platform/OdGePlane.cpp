#include "platform/OdGePlane.h"

#include <cmath>

namespace {

OdGeVector3d firstAxis(const OdGeVector3d& normal) {
    constexpr double nearZ = 1.0 / 64.0;
    const bool isNearZ = std::fabs(normal.x) < nearZ && std::fabs(normal.y) < nearZ;
    const OdGeVector3d reference = isNearZ ? OdGeVector3d(0, 1, 0) : OdGeVector3d(0, 0, 1);
    return reference.crossProduct(normal).normal();
}

}  // namespace

OdGePlane::OdGePlane(const OdGePoint3d& point, const OdGeVector3d& normal)
    : point_(point),
      axis1_(firstAxis(normal.normal())),
      axis2_(normal.normal().crossProduct(axis1_)) {
}
