#pragma once

#include <string>
#include <vector>

#include "core/geometry/CoordinateGrid.h"

namespace vpc {

class PointTreeReader;

/// Where the scans that a tree file was made from may be now: under the names that the file keeps,
/// seen from the current folder and from the file's own. They need not exist.
std::vector<std::string> sourceScans(PointTreeReader& tree);

/// The grids of those that are there and are LAS files.
std::vector<CoordinateGrid> sourceGrids(PointTreeReader& tree);

}  // namespace vpc
