#pragma once

#include "platform/GiPcClipConfig.h"
#include "platform/OdArray.h"
#include "platform/OdGeMatrix3d.h"
#include "platform/OdGePlane.h"
#include "platform/OdGePoint2d.h"
#include "platform/OdGePoint3d.h"

/// A clipping region: a circle or a polygon in a plane of its own. It keeps the points whose
/// projections into the plane are inside, or those whose projections are outside.
class VpcClipping {
public:
    /// Exactly one of the config's second and third flags set.
    bool keepInside;
    /// 0 for a circle; any other value for a polygon.
    OdUInt32 clipType;
    /// The config's flags, in its order.
    bool flag1;
    bool flag2;
    bool flag3;
    OdGePlane clipPlane;
    /// Kept, but not used.
    OdGeMatrix3d matrix1;
    OdGeMatrix3d matrix2;
    /// In the plane's coordinates: the polygon's corners, or the circle's centre and a point on it.
    OdArray<OdGePoint2d> vertices;
    /// 0 for a polygon.
    double radius = 0.0;

    explicit VpcClipping(const GiPcClipConfig& config);

    /// Whether the point passes the region.
    bool isInside(double x, double y, double z) const { return isInside(OdGePoint3d(x, y, z)); }
    bool isInside(const OdGePoint3d& p) const;
    /// The same for a point given in the plane's coordinates. A polygon without vertices lets
    /// every point pass, and so does a circle without centre.
    bool pointInPolygon(const OdGePoint2d& q) const;
    bool pointInCircle(const OdGePoint2d& q) const;
};
