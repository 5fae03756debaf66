#pragma once

#include "core/geometry/VpcBoundingBoxAxisAligned.h"

namespace vpc {

/// A box that holds its two corners and nothing derived from them. It takes a tenth of the memory
/// of a VpcBoundingBoxAxisAligned, which matters to callers that keep a great many.
struct BoxCorners {
    VpcCoordinate3D minPoint;
    VpcCoordinate3D maxPoint;

    BoxCorners(const VpcBoundingBoxAxisAligned& box)
        : minPoint(box.minPoint), maxPoint(box.maxPoint) {}
    BoxCorners(double x0, double y0, double z0, double x1, double y1, double z1) {
        minPoint.setCoordinates(x0, y0, z0);
        maxPoint.setCoordinates(x1, y1, z1);
    }

    operator VpcBoundingBoxAxisAligned() const {
        return {minPoint.x, minPoint.y, minPoint.z, maxPoint.x, maxPoint.y, maxPoint.z};
    }
    VpcPoint3D Centre() const {
        return VpcPoint3D(minPoint.x + 0.5 * (maxPoint.x - minPoint.x),
                          minPoint.y + 0.5 * (maxPoint.y - minPoint.y),
                          minPoint.z + 0.5 * (maxPoint.z - minPoint.z));
    }
    /// The square of the diagonal's length.
    double SquaredDiagonal() const {
        const double dx = maxPoint.x - minPoint.x;
        const double dy = maxPoint.y - minPoint.y;
        const double dz = maxPoint.z - minPoint.z;
        return dx * dx + dy * dy + dz * dz;
    }
};

}  // namespace vpc
