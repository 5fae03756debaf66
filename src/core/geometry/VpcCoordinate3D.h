#pragma once

#include <cmath>

/// Three doubles that compare by rounding to a class-wide precision.
///
/// Every constructor, the copy constructor included, sets the precision back to 1e-9. A call of
/// changePrecision therefore holds only until the next coordinate, point or vector is constructed.
/// That is deliberate: nobody can leave a coarser precision behind for others. Assignment does not
/// change the precision.
class VpcCoordinate3D {
public:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    /// Two coordinates are equal when they round to the same multiple of this.
    inline static double sEpsilon = 1e-9;
    /// 1 / sEpsilon: the value of the division, which is not the literal 1e9.
    inline static double sRoundFactor = 1 / 1e-9;

    VpcCoordinate3D() { changePrecision(1e-9); }
    /// Stores the coordinates and makes `epsilon` the class-wide precision.
    VpcCoordinate3D(double x0, double y0, double z0, double epsilon) : x(x0), y(y0), z(z0) {
        changePrecision(epsilon);
    }
    VpcCoordinate3D(const VpcCoordinate3D& other) : x(other.x), y(other.y), z(other.z) {
        changePrecision(1e-9);
    }
    VpcCoordinate3D& operator=(const VpcCoordinate3D&) = default;

    void setCoordinates(double x0, double y0, double z0) {
        x = x0;
        y = y0;
        z = z0;
    }

    /// Sets the class-wide precision and changes no instance.
    static void changePrecision(double epsilon) {
        sEpsilon = epsilon;
        sRoundFactor = 1 / epsilon;
    }

    /// Whether both values round (half away from zero) to the same multiple of the precision.
    bool compareCoord(double a, double b) const {
        return std::round(a * sRoundFactor) == std::round(b * sRoundFactor);
    }

    bool operator==(const VpcCoordinate3D& other) const {
        return compareCoord(x, other.x) && compareCoord(y, other.y) && compareCoord(z, other.z);
    }

    /// A hash of the exact bits (both zeros count as one value). Coordinates that compare equal
    /// by rounding may hash differently.
    unsigned long long ToHash() const;
};
