#pragma once

#include <functional>
#include <vector>

#include "tree/file/NodeRecord.h"

namespace vpc {

class PointTreeReader;

/// The sums over one level of a point tree.
struct LevelTotals {
    unsigned long long nodes = 0;
    unsigned long long points = 0;
    /// Points of the level's fullest node.
    unsigned long long largestNode = 0;
    /// Bytes of the level's node records.
    unsigned long long recordBytes = 0;

    /// Counts every level of the file in one pass over its records and calls `visit` with each
    /// record. Throws IoError where the header or the records do not fit in the file.
    static std::vector<LevelTotals> Count(
        PointTreeReader& file, const std::function<void(const NodeRecord&)>& visit = nullptr);
};

}  // namespace vpc
