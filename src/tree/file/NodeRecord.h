#pragma once

#include <array>
#include <vector>

#include "tree/file/PointTreeLayout.h"

namespace vpc {

/// One node record of a point tree file, its values as they stand in the file.
struct NodeRecord {
    using Triplet = std::array<unsigned long long, 3>;
    using Coordinates = std::array<double, 3>;
    struct ChildEntry {
        unsigned long long record = 0;
        unsigned long long pointBlock = 0;
    };

    /// Where the record stands in the file: its level, its place within the level, its first byte
    /// and its size.
    unsigned long long level = 0;
    unsigned long long index = 0;
    unsigned long long position = 0;
    unsigned long long size = 0;

    unsigned long long levelWord = 0;
    double minimumDistance = 0.0;
    /// The cell of every node on the path from the root down to this node, and the grid that each
    /// of these cells belongs to.
    std::vector<Triplet> indexPath;
    std::vector<Triplet> gridPath;
    Coordinates boxMinimum{};
    Coordinates boxMaximum{};
    unsigned long long points = 0;
    PointTreeLayout::ChildGrid grid;
    /// Cell widths along x, then along y, then along z.
    std::vector<double> cellWidths;
    unsigned long long recordPosition = 0;
    unsigned long long pointBlock = 0;
    unsigned long long pointList = 0;
    unsigned long long parentRecord = 0;
    unsigned long long parentPointBlock = 0;
    std::vector<ChildEntry> children;
};

}  // namespace vpc
