#pragma once

#include <utility>
#include <vector>

#include "core/geometry/VpcLine3D.h"
#include "core/geometry/VpcPoint3D.h"

/// A box along the axes, with values derived from its corners.
///
/// The derived values are stored so that the tree can read them without computing. Only Update
/// writes them, and every function that changes the box calls it. Corners are taken as given:
/// nothing swaps a min that lies above its max.
class VpcBoundingBoxAxisAligned {
public:
    VpcPoint3D minPoint;
    VpcPoint3D maxPoint;
    /// minPoint and maxPoint; empty in the empty box.
    std::vector<VpcPoint3D> cornerPoints;
    VpcPoint3D centre;
    double sideX = 0.0;
    double sideY = 0.0;
    double sideZ = 0.0;
    /// Radius of the sphere through the corners.
    double halfDiagonal = 0.0;
    /// (axis, length), sorted by length; equal lengths keep the order of the axes.
    std::vector<std::pair<int, double>> sortedSides;

    /// The empty box. Its min lies above its max, so that growing it needs no special case. Its
    /// derived values are not computed.
    VpcBoundingBoxAxisAligned();
    VpcBoundingBoxAxisAligned(const VpcPoint3D& min, const VpcPoint3D& max);
    VpcBoundingBoxAxisAligned(double x0, double y0, double z0, double x1, double y1, double z1);

    /// Sets the corners and everything derived from them. Always true.
    bool Update(double x0, double y0, double z0, double x1, double y1, double z1);
    bool SetNewBoundaries(const VpcBoundingBoxAxisAligned& box);
    bool SetNewBoundaries(double x0, double y0, double z0, double x1, double y1, double z1);
    bool SetNewBoundaries(const VpcPoint3D& min, const VpcPoint3D& max);
    /// Grows the box to include `p`.
    bool UpdateRegionOfInterest(const VpcPoint3D& p);
    /// The smallest box around this one and `other`.
    VpcBoundingBoxAxisAligned MergeWith(const VpcBoundingBoxAxisAligned& other) const;
    /// Scales about the centre. Returns false and changes nothing unless `factor` is positive.
    bool Scale(double factor);
    /// Moves every side out by `m`, or in where `m` is negative.
    bool AddMargin(double m);

    /// Half-open: min - tol <= p < max + tol on every axis, so that of two neighbouring boxes of a
    /// subdivision exactly one contains a point.
    bool ContainsPointIntervalClosedMinOpenMax(const VpcPoint3D& p, double tol) const {
        return ContainsPointIntervalClosedMinOpenMax(p.x, p.y, p.z, tol);
    }
    bool ContainsPointIntervalClosedMinOpenMax(double x, double y, double z, double tol) const {
        return minPoint.x - tol <= x && x < maxPoint.x + tol &&  //
               minPoint.y - tol <= y && y < maxPoint.y + tol &&  //
               minPoint.z - tol <= z && z < maxPoint.z + tol;
    }
    /// Closed: min <= p <= max on every axis, exactly; the tolerance is not used.
    bool ContainsPointIntervalClosed(const VpcPoint3D& p, double tol) const {
        return ContainsPointIntervalClosed(p.x, p.y, p.z, tol);
    }
    bool ContainsPointIntervalClosed(double x, double y, double z,
                                     [[maybe_unused]] double tol) const {
        return minPoint.x <= x && x <= maxPoint.x &&  //
               minPoint.y <= y && y <= maxPoint.y &&  //
               minPoint.z <= z && z <= maxPoint.z;
    }

    /// Whether the ray from the line's origin along its direction meets the box. On a hit, `t`
    /// tells where the ray enters, in units of the direction; it is negative when the ray starts
    /// inside. On a miss, `t` tells where the ray leaves the last slab.
    bool Intersect(const VpcLine3D& line, double& t) const;

    /// The eight corners: the lower face from (x0, y0) over (x0, y1), (x1, y1) to
    /// (x1, y0), then the upper face in the same order.
    std::vector<VpcPoint3D> GetVertexList() const;
};

/// Orders sides by length.
bool myBoxSideSort(std::pair<int, double> a, std::pair<int, double> b);
/// Orders points projected into a plane: by x, then by y.
bool sortProjPoints(const VpcPoint3D& a, const VpcPoint3D& b);
