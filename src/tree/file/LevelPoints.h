#pragma once

#include <functional>
#include <vector>

#include "core/geometry/VpcPoint3D.h"

namespace vpc {

class PointTreeReader;

/// Reads all points of one level of a tree file.
class LevelPoints {
public:
    /// The points of the level's nodes in the order of the file. Throws IoError where the file does
    /// not hold what its header and its records claim.
    /// \param beforeNode is called before the points of a node are read; what it throws ends the
    ///                   reading
    static std::vector<VpcPoint3D> Read(PointTreeReader& file, unsigned long long level,
                                        const std::function<void()>& beforeNode = nullptr);
};

}  // namespace vpc
