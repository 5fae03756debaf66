#include "core/geometry/VpcTransform3D.h"

#include <cmath>

namespace {

VpcVector3D rotateXThenYThenZ(const VpcVector3D& v, double a, double b, double c) {
    const VpcVector3D aboutX = VpcTransform3D::RotateAxisX(v, a);
    const VpcVector3D aboutY = VpcTransform3D::RotateAxisY(aboutX, b);
    return VpcTransform3D::RotateAxisZ(aboutY, c);
}

}  // namespace

VpcTransform3D::VpcTransform3D(const OdGeMatrix3d& matrix) {
    for (int row = 0; row < 3; ++row) {
        const auto r = static_cast<std::size_t>(row);
        rotation[r] = {matrix[row][0], matrix[row][1], matrix[row][2]};
        translation[r] = matrix[row][3];
    }
}

void VpcTransform3D::SetValues(double (*R)[3], double* t) {
    for (std::size_t row = 0; row < 3; ++row) {
        rotation[row] = {R[row][0], R[row][1], R[row][2]};
        translation[row] = t[row];
    }
}

OdGeMatrix3d VpcTransform3D::ToOdGeMatrix3d() const {
    OdGeMatrix3d matrix;
    for (int row = 0; row < 3; ++row) {
        const auto r = static_cast<std::size_t>(row);
        for (int column = 0; column < 3; ++column)
            matrix[row][column] = rotation[r][static_cast<std::size_t>(column)];
        matrix[row][3] = translation[r];
    }
    return matrix;
}

bool VpcTransform3D::ApplyForwardTransform(VpcPoint3D& p) const {
    const auto coordinate = [&](std::size_t r) {
        return rotation[r][0] * p.x + rotation[r][1] * p.y + rotation[r][2] * p.z + translation[r];
    };
    p.SetCoordinates(coordinate(0), coordinate(1), coordinate(2));
    return true;
}

bool VpcTransform3D::ApplyForwardTransform(VpcVector3D& v) const {
    ApplyForwardRotation(v);
    v.SetCoordinates(v.x + translation[0], v.y + translation[1], v.z + translation[2]);
    return true;
}

bool VpcTransform3D::ApplyInverseTransform(VpcPoint3D& p) const {
    VpcVector3D v(p.x - translation[0], p.y - translation[1], p.z - translation[2]);
    ApplyInverseRotation(v);
    p.SetCoordinates(v.x, v.y, v.z);
    return true;
}

bool VpcTransform3D::ApplyForwardRotation(VpcVector3D& v) const {
    const auto component = [&](const Row& row) {
        return row[0] * v.x + row[1] * v.y + row[2] * v.z;
    };
    v.SetCoordinates(component(rotation[0]), component(rotation[1]), component(rotation[2]));
    return true;
}

bool VpcTransform3D::ApplyInverseRotation(VpcVector3D& v) const {
    v.SetCoordinates(GetColumn(0).Dot(v), GetColumn(1).Dot(v), GetColumn(2).Dot(v));
    return true;
}

VpcVector3D VpcTransform3D::GetColumn(unsigned long long i) const {
    const std::size_t column = i < 2 ? i : 2;
    return {rotation[0][column], rotation[1][column], rotation[2][column]};
}

VpcVector3D VpcTransform3D::RotateAxisX(const VpcVector3D& v, double angle) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {v.x, c * v.y - s * v.z, c * v.z + s * v.y};
}

VpcVector3D VpcTransform3D::RotateAxisY(const VpcVector3D& v, double angle) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {c * v.x + s * v.z, v.y, c * v.z - s * v.x};
}

VpcVector3D VpcTransform3D::RotateAxisZ(const VpcVector3D& v, double angle) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {c * v.x - s * v.y, c * v.y + s * v.x, v.z};
}

void VpcTransform3D::SetEulerAngles(double a, double b, double c, const VpcPoint3D& origin) {
    angles = {a, b, c};
    translation = {origin.x, origin.y, origin.z};
    SetColumns(rotateXThenYThenZ({1, 0, 0}, a, b, c), rotateXThenYThenZ({0, 1, 0}, a, b, c),
               rotateXThenYThenZ({0, 0, 1}, a, b, c));
}

void VpcTransform3D::RotatePoint(VpcPoint3D& p, double a, double b, double c,
                                 const VpcPoint3D& origin) {
    const VpcVector3D turned = rotateXThenYThenZ(VpcVector3D(origin, p), a, b, c);
    p.SetCoordinates(origin.x + turned.x, origin.y + turned.y, origin.z + turned.z);
}

void VpcTransform3D::CreateFromBaseVectors(const VpcVector3D& axisX, const VpcVector3D& axisY,
                                           const VpcVector3D& axisZ, const VpcVector3D& origin) {
    translation = {origin.x, origin.y, origin.z};
    SetColumns(axisX, axisY, axisZ);
}

void VpcTransform3D::SetColumns(const VpcVector3D& x, const VpcVector3D& y, const VpcVector3D& z) {
    rotation = {{{x.x, y.x, z.x}, {x.y, y.y, z.y}, {x.z, y.z, z.z}}};
}
