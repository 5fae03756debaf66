#pragma once

#include <cmath>

namespace vpc::draw {

/// A point or a direction in the world.
struct Point3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    Point3 operator+(const Point3& p) const { return {x + p.x, y + p.y, z + p.z}; }
    Point3 operator-(const Point3& p) const { return {x - p.x, y - p.y, z - p.z}; }
    Point3 operator*(double f) const { return {x * f, y * f, z * f}; }
    double Dot(const Point3& p) const { return x * p.x + y * p.y + z * p.z; }
};

}  // namespace vpc::draw
