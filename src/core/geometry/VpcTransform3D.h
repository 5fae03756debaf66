#pragma once

#include <array>

#include "core/geometry/VpcPoint3D.h"
#include "core/geometry/VpcVector3D.h"
#include "platform/OdGeMatrix3d.h"

/// A rotation R and a translation t: p becomes R p + t. Angles are in radians.
class VpcTransform3D {
public:
    using Row = std::array<double, 3>;

    /// The angles that SetEulerAngles was last given.
    Row angles{};
    /// R, row by row.
    std::array<Row, 3> rotation{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    Row translation{};

    VpcTransform3D() = default;
    /// The rotation and translation of a rigid matrix, whose bottom row is ignored.
    VpcTransform3D(const OdGeMatrix3d& matrix);
    VpcTransform3D(double (*R)[3], double* t) { SetValues(R, t); }

    /// Copies three rows of the rotation and the translation; the angles stay as they are.
    void SetValues(double (*R)[3], double* t);
    OdGeMatrix3d ToOdGeMatrix3d() const;

    // These change the coordinates of their argument and nothing else. They return true.

    bool ApplyForwardTransform(VpcPoint3D& p) const;
    /// Adds the translation to a vector, too.
    bool ApplyForwardTransform(VpcVector3D& v) const;
    bool ApplyInverseTransform(VpcPoint3D& p) const;
    bool ApplyForwardRotation(VpcVector3D& v) const;
    bool ApplyInverseRotation(VpcVector3D& v) const;

    /// Column `i` of R; the last one for any index above.
    VpcVector3D GetColumn(unsigned long long i) const;

    // These return `v` turned counter-clockwise, as seen from the positive end of the axis.

    static VpcVector3D RotateAxisX(const VpcVector3D& v, double angle);
    static VpcVector3D RotateAxisY(const VpcVector3D& v, double angle);
    static VpcVector3D RotateAxisZ(const VpcVector3D& v, double angle);

    /// Turns by `a` about x, then by `b` about y, then by `c` about z, and moves to `origin`.
    void SetEulerAngles(double a, double b, double c, const VpcPoint3D& origin);
    /// Turns `p` about `origin`, in the same order.
    static void RotatePoint(VpcPoint3D& p, double a, double b, double c, const VpcPoint3D& origin);
    /// Makes the axes the columns of R and the origin the translation.
    void CreateFromBaseVectors(const VpcVector3D& axisX, const VpcVector3D& axisY,
                               const VpcVector3D& axisZ, const VpcVector3D& origin);

private:
    void SetColumns(const VpcVector3D& x, const VpcVector3D& y, const VpcVector3D& z);
};
