#pragma once

#include <array>
#include <string>
#include <vector>

#include "support/PointRecord.h"

namespace vpc::test {

using Word = unsigned long long;
using Words3 = std::array<Word, 3>;
using Doubles3 = std::array<double, 3>;

/// A node of a tree file as it stands in the file.
struct TreeNode {
    Word level = 0;
    double distance = 0;
    std::vector<Words3> path, gridPath;
    Doubles3 boxMin{}, boxMax{};
    Word pointCount = 0;
    Words3 grid{};
    std::array<std::vector<double>, 3> cellWidths;
    Word ownPosition = 0, blockPosition = 0, listPosition = 0;
    Word parentPosition = 0, parentBlockPosition = 0;
    /// Record and point block of every child.
    std::vector<std::array<Word, 2>> children;
    std::vector<PointRecord> points;
};

/// A point tree file, read byte by byte with nothing of the library's own: what the tests hold
/// against it. Throws std::runtime_error where the file ends too early or cannot be.
class TreeFile {
public:
    explicit TreeFile(const std::string& bytes);

    Word pointDataPosition = 0;
    std::vector<std::vector<TreeNode>> levels;

    /// The points of a level, in the order of the file.
    std::vector<PointRecord> pointsOf(std::size_t level) const;
};

/// The points that a node hands to its parent, by the rule for the tree type.
std::vector<PointRecord> thinned(const std::vector<PointRecord>& points, bool isKdTree);

}  // namespace vpc::test
