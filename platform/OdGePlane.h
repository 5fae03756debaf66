#pragma once

#include "platform/OdGePoint2d.h"
#include "platform/OdGePoint3d.h"
#include "platform/OdGeVector3d.h"

/// Stand-in for the host SDK's plane: a point and two axes in the plane.
class OdGePlane {
public:
    /// The plane of x and y.
    OdGePlane() = default;
    /// The axes follow the arbitrary axis rule: the first is square to the world's z axis, or to
    /// its y axis where the normal is within 1/64 of z.
    OdGePlane(const OdGePoint3d& point, const OdGeVector3d& normal);

private:
    friend class OdGePoint3d;

    OdGePoint3d point_;
    OdGeVector3d axis1_{1.0, 0.0, 0.0};
    OdGeVector3d axis2_{0.0, 1.0, 0.0};
};

inline OdGePoint2d OdGePoint3d::convert2d(const OdGePlane& plane) const {
    const OdGeVector3d offset = *this - plane.point_;
    return {offset.dotProduct(plane.axis1_), offset.dotProduct(plane.axis2_)};
}
