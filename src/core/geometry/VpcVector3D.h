#pragma once

#include <cmath>
#include <iosfwd>
#include <string>

#include "core/geometry/VpcCoordinate3D.h"

class VpcPoint3D;

/// A direction or displacement. All angles are in radians.
class VpcVector3D : public VpcCoordinate3D {
public:
    /// How far apart components may be for operator==. It belongs to this object alone:
    /// constructors and assignments do not copy it.
    double tolerance = 1e-13;

    VpcVector3D() = default;
    VpcVector3D(double x0, double y0, double z0) { setCoordinates(x0, y0, z0); }
    VpcVector3D(const VpcVector3D& other) : VpcCoordinate3D(other) {}
    /// to - from
    VpcVector3D(const VpcPoint3D& from, const VpcPoint3D& to);
    explicit VpcVector3D(const VpcCoordinate3D& c) : VpcCoordinate3D(c) {}
    VpcVector3D& operator=(const VpcVector3D& other) {
        setCoordinates(other.x, other.y, other.z);
        return *this;
    }

    void SetCoordinates(double x0, double y0, double z0) { setCoordinates(x0, y0, z0); }
    VpcCoordinate3D ToVpcCoordinate3D() const { return *this; }

    VpcVector3D operator+(const VpcVector3D& v) const { return {x + v.x, y + v.y, z + v.z}; }
    VpcVector3D operator-(const VpcVector3D& v) const { return {x - v.x, y - v.y, z - v.z}; }
    VpcVector3D operator*(double f) const { return {x * f, y * f, z * f}; }
    VpcVector3D operator/(double f) const { return {x / f, y / f, z / f}; }

    /// Whether every component differs by less than this vector's tolerance.
    bool operator==(const VpcVector3D& other) const { return IsWithin(other, tolerance); }
    /// The same test with `tol`, or with this vector's tolerance when `tol` is not positive.
    bool IsEqual(const VpcVector3D& other, double tol) const {
        return IsWithin(other, tol <= 0.0 ? tolerance : tol);
    }

    double Dot(const VpcVector3D& v) const { return x * v.x + y * v.y + z * v.z; }
    /// this × v
    VpcVector3D Cross(const VpcVector3D& v) const {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }
    double Magnitude() const { return std::sqrt(x * x + y * y + z * z); }
    /// Scales to length 1 in place; a zero vector becomes NaN.
    void Normalize() {
        const double length = Magnitude();
        setCoordinates(x / length, y / length, z / length);
    }
    void Negate() { setCoordinates(-x, -y, -z); }

    /// The x and y axes of the plane with this normal, by the arbitrary axis algorithm of DXF.
    static void CreateArbitraryAxesFromNormal(VpcVector3D normal, VpcVector3D& axisX,
                                              VpcVector3D& axisY);

    /// The angle in [0, pi]. NaN for a zero vector, and where rounding takes the cosine past 1.
    double AngleTo(const VpcVector3D& v) const;
    /// AngleTo, but negative unless this × v points to the side of `reference`. Parallel vectors
    /// have no such side, so their angle is negative, too.
    double DirectionalAngle(const VpcVector3D& v, const VpcVector3D& reference) const;
    /// The angle of the direction (this · v, this · reference) in the plane, in [0, 2 pi).
    double AngleTo2PI(const VpcVector3D& v, const VpcVector3D& reference) const;

    /// Whether the direction leaves the xy plane by less than `tol` (as a sine).
    bool IsHorizontal(double tol) const { return std::abs(z / Magnitude()) < tol; }
    bool IsVertical(double tol) const { return std::abs(1 - std::abs(z / Magnitude())) < tol; }

    /// "x y z", or " ( x, y, z ) " when `bracketed`, with six significant digits. Components that
    /// are not finite are written as 0.
    std::string ToString(bool bracketed) const;

private:
    bool IsWithin(const VpcVector3D& other, double tol) const {
        return tol > std::abs(x - other.x) && tol > std::abs(y - other.y) &&
               tol > std::abs(z - other.z);
    }
};

/// Writes ToString(false).
std::ostream& operator<<(std::ostream& out, const VpcVector3D& v);
