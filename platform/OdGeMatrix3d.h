#pragma once

/// Stand-in for the host SDK's 4 x 4 matrix. It is stored row by row and multiplies points as
/// columns on its right.
class OdGeMatrix3d {
public:
    double entry[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

    /// The inverse; the identity where the matrix has no inverse.
    OdGeMatrix3d inverse() const;

    double* operator[](int row) { return entry[row]; }
    const double* operator[](int row) const { return entry[row]; }
};
