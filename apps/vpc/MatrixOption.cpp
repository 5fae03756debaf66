#include "MatrixOption.h"

#include <cmath>

#include "CommandError.h"
#include "NumberList.h"

namespace vpc {

namespace {

/// Matrices that are written with six decimals shall pass.
constexpr double tolerance = 1e-5;

bool isNear(double a, double b) {
    return std::abs(a - b) <= tolerance;
}

/// Whether the rows of the upper left part are at right angles and of length 1, and the bottom row
/// is that of an affine matrix.
bool isRigid(const OdGeMatrix3d& m) {
    for (int i = 0; i < 3; ++i) {
        if (!isNear(m[3][i], 0.0)) return false;
        for (int j = 0; j <= i; ++j) {
            const double dot = m[i][0] * m[j][0] + m[i][1] * m[j][1] + m[i][2] * m[j][2];
            if (!isNear(dot, i == j ? 1.0 : 0.0)) return false;
        }
    }
    return isNear(m[3][3], 1.0);
}

}  // namespace

OdGeMatrix3d MatrixOption::Parse(const std::vector<std::string>& texts) {
    OdGeMatrix3d matrix;
    std::vector<double> values;
    values.reserve(texts.size());
    for (const std::string& text : texts)
        values.push_back(
            NumberList::Require(text, 1, "--matrix", "16 numbers, row by row").front());
    for (int i = 0; i < static_cast<int>(values.size()); ++i)
        matrix[i / 4][i % 4] = values[static_cast<std::size_t>(i)];
    if (!isRigid(matrix))
        throw CommandUsageError(
            "--matrix takes a rotation and a translation: rows at right angles and of length 1, "
            "the translation in the last column, and 0,0,0,1 as the last row");
    return matrix;
}

}  // namespace vpc
