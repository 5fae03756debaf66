#pragma once

#include <vector>

#include <wx/string.h>

#include "core/geometry/VpcPoint3D.h"

namespace vpc {

struct PointTreeHeader;

/// Reads all points of one level of a tree file.
class LevelPoints {
public:
    /// The points of the level's nodes in the order of the file. Throws CommandError where the
    /// file does not hold what its records claim.
    static std::vector<VpcPoint3D> Read(const wxString& file, const PointTreeHeader& header,
                                        unsigned long long level);
};

}  // namespace vpc
