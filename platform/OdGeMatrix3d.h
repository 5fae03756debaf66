#pragma once

/// Stand-in for the host SDK's 4 x 4 matrix; rows first, points are columns to its right.
class OdGeMatrix3d {
public:
    double entry[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

    /// The inverse; the identity where there is none.
    OdGeMatrix3d inverse() const;

    double* operator[](int row) { return entry[row]; }
    const double* operator[](int row) const { return entry[row]; }
};
