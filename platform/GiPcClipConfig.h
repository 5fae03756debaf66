#pragma once

#include "platform/OdArray.h"
#include "platform/OdGeMatrix3d.h"
#include "platform/OdGePlane.h"
#include "platform/OdGePoint2d.h"
#include "platform/OdPlatform.h"

/// A clipping region as the host describes it. The host knows what the flags and matrices mean; the
/// library keeps the inside where exactly one of the second and the third flag is set.
class GiPcClipConfig {
public:
    /// 0 is a circle, anything else a polygon.
    OdUInt32 type = 0;
    bool flag1 = false;
    bool flag2 = false;
    bool flag3 = false;
    OdGePlane plane;
    OdGeMatrix3d matrix1;
    OdGeMatrix3d matrix2;
    /// In the plane's two coordinates: the polygon's corners, or a circle's centre and a point on
    /// it.
    OdArray<OdGePoint2d> vertices;
};
