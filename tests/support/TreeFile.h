#pragma once

#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

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

    /// Shows the members of the record in the order of the file, lists with their length.
    template <class Node, class Show>
    static void visit(Node& n, Show& show) {
        show("level", n.level);
        show("minimum distance", n.distance);
        show("path", n.path, n.level + 1);
        show("grids of the path", n.gridPath, n.level + 1);
        show("box minimum", n.boxMin);
        show("box maximum", n.boxMax);
        show("point count", n.pointCount);
        show("children along x", n.grid[0]);
        show("children along y", n.grid[1]);
        show("children along z", n.grid[2]);
        show("cell widths", n.cellWidths, n.grid);
        show("own position", n.ownPosition);
        show("point block position", n.blockPosition);
        show("point list position", n.listPosition);
        show("parent's position", n.parentPosition);
        show("parent's point block position", n.parentBlockPosition);
        show("children's positions", n.children, n.grid[0] * n.grid[1] * n.grid[2]);
    }
};

/// A point tree file, read and written without the library, so that tests can check the library
/// against it. All that the tests know about the file's layout stands here.
class TreeFile {
public:
    TreeFile() = default;
    /// Reads a file; throws std::runtime_error where it ends too early or claims more than it
    /// holds.
    explicit TreeFile(const std::string& bytes);

    /// The bytes of the file, after everything that follows from the nodes' paths, grids, boxes
    /// and points is set: counts, levels, cell widths, positions.
    /// \param memberPositions  receives the position of every member of every node's record
    std::string bytes(std::vector<std::vector<Word>>* memberPositions = nullptr);

    Word version = 9, treeType = 0;
    double minimumDistance = 0;
    Word largestNodeCount = 0;
    bool flag = false;
    std::uint16_t maxRed = 0, maxGreen = 0, maxBlue = 0;
    double maxIntensity = 0;
    std::array<double, 6> unused{1, 1, 1, 0, 0, 0};
    Word hostValue = 0, recordsPosition = 0, pointDataPosition = 0;
    std::vector<std::u32string> sourceNames;
    Word pointSize = PointRecord::size;
    std::vector<Word> nodeCounts;
    std::vector<std::vector<TreeNode>> levels;

    template <class File, class Show>
    static void visit(File& f, Show& show) {
        show("version", f.version);
        show("tree type", f.treeType);
        show("minimum distance", f.minimumDistance);
        show("largest node count", f.largestNodeCount);
        show("flag", f.flag);
        show("largest red", f.maxRed);
        show("largest green", f.maxGreen);
        show("largest blue", f.maxBlue);
        show("largest intensity", f.maxIntensity);
        show("unused numbers", f.unused);
        show("host value", f.hostValue);
        show("node records' position", f.recordsPosition);
        show("point data position", f.pointDataPosition);
        show("source names", f.sourceNames);
        show("size of a point", f.pointSize);
        show("nodes of the levels", f.nodeCounts);
    }

    /// The points of a level, in the order of the file.
    std::vector<PointRecord> pointsOf(std::size_t level) const;

private:
    void link();
};

/// Whether a tree file has the bytes of another; else it names the first differences in header,
/// node records and points.
testing::AssertionResult isTree(const std::string& made, const std::string& expected);

}  // namespace vpc::test
