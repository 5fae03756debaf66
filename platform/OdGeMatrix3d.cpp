#include "platform/OdGeMatrix3d.h"

#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr int size = 4;

/// The row, from `column` down, with the largest entry of that column. Dividing by the largest
/// keeps rounding small.
int pivotRow(const OdGeMatrix3d& matrix, int column) {
    int best = column;
    for (int row = column + 1; row < size; ++row) {
        if (std::fabs(matrix[row][column]) > std::fabs(matrix[best][column])) best = row;
    }
    return best;
}

void scaleRow(OdGeMatrix3d& matrix, int row, double divisor) {
    for (double& value : matrix.entry[row]) value /= divisor;
}

void subtractRow(OdGeMatrix3d& matrix, int row, int from, double factor) {
    for (int k = 0; k < size; ++k) matrix[row][k] -= factor * matrix[from][k];
}

bool isUsablePivot(double value) {
    return std::fabs(value) >= std::numeric_limits<double>::min() && std::isfinite(value);
}

}  // namespace

OdGeMatrix3d OdGeMatrix3d::inverse() const {
    OdGeMatrix3d left = *this;
    OdGeMatrix3d right;
    for (int column = 0; column < size; ++column) {
        const int pivot = pivotRow(left, column);
        const double value = left[pivot][column];
        if (!isUsablePivot(value)) return {};
        std::swap(left.entry[pivot], left.entry[column]);
        std::swap(right.entry[pivot], right.entry[column]);
        scaleRow(left, column, value);
        scaleRow(right, column, value);
        for (int row = 0; row < size; ++row) {
            const double factor = left[row][column];
            if (row == column || factor == 0.0) continue;
            subtractRow(left, row, column, factor);
            subtractRow(right, row, column, factor);
        }
    }
    return right;
}
