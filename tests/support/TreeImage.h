#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "support/TreeFile.h"

namespace vpc::test {

/// The bytes of a small tree file, with the position of everything noted on the way:
///
///   level 0   the root, cut in two along x, 2 points
///   level 1   its west half, pushed down, 3 points; its east half, an empty leaf
///   level 2   the west half again, with all 5 points
class TreeImage {
public:
    using Word = vpc::test::Word;

    /// The values of a record's members, and where these stand in the file.
    struct Node {
        Word level = 0;
        Doubles3 low{};
        Doubles3 high{};
        Word points = 0;
        /// Positions of the members 0 to 16, and of the point block.
        std::vector<Word> members;
        Word block = 0;
    };

    explicit TreeImage(const std::vector<std::u32string>& sourceNames) {
        const Words3 halves{2, 1, 1}, whole{1, 1, 1}, west{}, east{1, 0, 0};
        TreeFile file;
        file.minimumDistance = 0.25;
        file.maxRed = 255, file.maxGreen = 254, file.maxBlue = 253, file.maxIntensity = 99.5;
        file.hostValue = 6;
        file.sourceNames = sourceNames;
        file.levels = {{node({west}, {whole}, halves, 0, 4, 2)},
                       {node({west, west}, {whole, halves}, whole, 0, 2, 3),
                        node({west, east}, {whole, halves}, {}, 2, 4, 0)},
                       {node({west, west, west}, {whole, halves, whole}, whole, 0, 2, 5)}};
        std::vector<std::vector<Word>> members;
        bytes = file.bytes(&members);
        for (const auto& level : file.levels)
            for (const TreeNode& n : level)
                nodes.push_back({n.level, n.boxMin, n.boxMax, n.pointCount, members[nodes.size()],
                                 n.blockPosition});
    }

    /// Overwrites the bytes at `position`.
    template <class T>
    void patch(Word position, T value) {
        std::memcpy(bytes.data() + position, &value, sizeof value);
    }
    Word firstRecord() const { return nodes.front().members[0]; }
    Word pointData() const { return nodes.front().block; }

    std::string bytes;
    std::vector<Node> nodes;

private:
    static TreeNode node(const std::vector<Words3>& path, const std::vector<Words3>& gridPath,
                         const Words3& grid, double low, double high, int points) {
        TreeNode n;
        n.distance = 0.5;
        n.path = path, n.gridPath = gridPath, n.grid = grid;
        n.boxMin = {low, 0, 0}, n.boxMax = {high, 2, 2};
        for (int i = 0; i < points; ++i) n.points.push_back({i / 4.0, 1, 2, 0, 0, 0, 0, 0, 0, 0});
        return n;
    }
};

}  // namespace vpc::test
