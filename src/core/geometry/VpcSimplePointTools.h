#pragma once

#include <vector>

#include "core/geometry/VpcCoordinate3D.h"
#include "core/geometry/VpcPoint3D.h"
#include "core/geometry/VpcVector3D.h"

/// Statistics over lists of points, and conversions between coordinate systems.
class VpcSimplePointTools {
public:
    using PointList = std::vector<VpcPoint3D>;
    using IndexList = std::vector<unsigned long long>;

    /// The smallest and largest coordinates, (0, 0, 0) for an empty list. Attributes do not change.
    static void DeterminePointsMinMaxPoints(const PointList& list, VpcPoint3D& min,
                                            VpcPoint3D& max);
    /// The smallest distance between two points; 1e26 for fewer than two points. Returns true. The
    /// time grows with the square of the number of points.
    static bool DetermineMinPointsDistance(const PointList& list, double& d);
    /// The ranges of the attributes; 100000 to -100000 for an empty list.
    static void GetColorRanges(const PointList& list, double& intensityMin, double& intensityMax,
                               double& redMin, double& redMax, double& greenMin, double& greenMax,
                               double& blueMin, double& blueMax);
    /// The indices of the points in the order of their x, y and z, none of which may be NaN. The
    /// order of equal coordinates is not specified.
    static void SortIndices(const PointList& list, IndexList& byX, IndexList& byY, IndexList& byZ);
    /// Counts every point once, by the first that holds: it has a NaN coordinate, it has an
    /// infinite one, it lies at the origin, it is regular. Returns true.
    static bool GetInvalidPointCounts(const PointList& list, unsigned long long& zeroCount,
                                      unsigned long long& infiniteCount,
                                      unsigned long long& nanCount,
                                      unsigned long long& regularCount);

    // Angles in radians. Spherical: (radius, azimuth in (-pi, pi], polar angle from +z); the origin
    // has no polar angle (NaN). Cylindrical: (radius, azimuth, z). The returned points have default
    // attributes, not those of the argument.

    static VpcCoordinate3D CartesianToSpherical(const VpcCoordinate3D& c);
    static VpcVector3D CartesianToSpherical(const VpcVector3D& v);
    static VpcPoint3D CartesianToSpherical(const VpcPoint3D& p);
    static VpcCoordinate3D SphericalToCartesian(const VpcCoordinate3D& c);
    static VpcVector3D SphericalToCartesian(const VpcVector3D& v);
    static VpcPoint3D SphericalToCartesian(const VpcPoint3D& p);
    static VpcCoordinate3D CartesianToCylindrical(const VpcCoordinate3D& c);
    static VpcVector3D CartesianToCylindrical(const VpcVector3D& v);
    static VpcPoint3D CartesianToCylindrical(const VpcPoint3D& p);
    static VpcCoordinate3D CylindricalToCartesian(const VpcCoordinate3D& c);
    static VpcVector3D CylindricalToCartesian(const VpcVector3D& v);
    static VpcPoint3D CylindricalToCartesian(const VpcPoint3D& p);
};
