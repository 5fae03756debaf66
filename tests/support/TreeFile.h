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
    Word position = 0;
    Word level = 0;
    double distance = 0;
    std::vector<Words3> path;
    std::vector<Words3> gridPath;
    Doubles3 boxMin{};
    Doubles3 boxMax{};
    Word pointCount = 0;
    Words3 grid{};
    std::array<std::vector<double>, 3> cellWidths;
    Word ownPosition = 0;
    Word blockPosition = 0;
    Word listPosition = 0;
    Word parentPosition = 0;
    Word parentBlockPosition = 0;
    std::vector<std::array<Word, 2>> children;
    std::vector<PointRecord> points;
};

/// A point tree file, read byte by byte with nothing of the library's own: what the tests hold
/// against it. Throws std::runtime_error where the file ends too early or cannot be.
class TreeFile {
public:
    explicit TreeFile(const std::string& fileBytes);

    Word version = 0;
    Word treeType = 0;
    double minimumDistance = 0;
    Word largestNodeCount = 0;
    bool flag = false;
    std::array<std::uint16_t, 3> maxColours{};
    double maxIntensity = 0;
    std::array<double, 6> furtherDoubles{};
    Word hostValue = 0;
    Word nodeRecordsPosition = 0;
    Word pointDataPosition = 0;
    Word sourceNames = 0;
    Word pointSize = 0;
    std::vector<std::vector<TreeNode>> levels;

    /// Everything about the file that cannot be right: positions, links, counts, boxes, points
    /// outside their nodes, parents that hold other points than the sampling rule gives.
    std::vector<std::string> problems() const;
    /// The records of the deepest level's points, sorted.
    std::vector<std::string> deepestPoints() const;

private:
    void readHeader();
    TreeNode readNode(Word level);
    void readPoints(TreeNode& node);
    void takeTriplet(Words3& triplet);
    template <class T>
    T take();

    std::string bytes_;
    std::size_t cursor_ = 0;
};

/// The points that a node hands to its parent, by the rule for the tree type.
std::vector<PointRecord> thinned(const std::vector<PointRecord>& points, bool isKdTree);

}  // namespace vpc::test
