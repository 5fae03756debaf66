#pragma once

#include <string>
#include <vector>

#include "platform/OdGeMatrix3d.h"

namespace vpc {

/// The matrix that takes a tree file's coordinates to the world's.
class MatrixOption {
public:
    static constexpr int numbers = 16;

    /// \param texts 16 numbers, row by row; none for the identity. Throws CommandUsageError for
    /// anything that is no rotation and translation.
    static OdGeMatrix3d Parse(const std::vector<std::string>& texts);
};

}  // namespace vpc
