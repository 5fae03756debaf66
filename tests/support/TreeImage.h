#pragma once

#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace vpc::test {

/// The bytes of a small tree file, put together by hand, member by member, with the position of
/// everything noted on the way:
///
///   level 0   the root, cut in two along x, 2 points
///   level 1   its west half, pushed down, 3 points; its east half, an empty leaf
///   level 2   the west half again, with all 5 points
class TreeImage {
public:
    using Word = unsigned long long;

    /// What a member of a record was written with can be found at its position.
    struct Node {
        Word level = 0;
        std::array<Word, 3> grid{};
        std::array<double, 3> low{};
        std::array<double, 3> high{};
        Word points = 0;
        int parent = -1;
        std::vector<std::size_t> children;
        /// Positions of the members 0 to 16, and of the point block.
        std::array<Word, 17> members{};
        Word block = 0;
    };

    explicit TreeImage(const std::vector<std::u32string>& sourceNames) {
        nodes = {{0, {2, 1, 1}, {0, 0, 0}, {4, 2, 2}, 2, -1, {1, 2}, {}, 0},
                 {1, {1, 1, 1}, {0, 0, 0}, {2, 2, 2}, 3, 0, {3}, {}, 0},
                 {1, {0, 0, 0}, {2, 0, 0}, {4, 2, 2}, 0, 0, {}, {}, 0},
                 {2, {1, 1, 1}, {0, 0, 0}, {2, 2, 2}, 5, 1, {}, {}, 0}};
        putHeader(sourceNames);
        patch(103, bytes.size());
        for (Node& node : nodes) putRecord(node);
        patch(111, bytes.size());
        for (Node& node : nodes) putBlock(node);
        for (Node& node : nodes) patchLinks(node);
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
    template <class T>
    void put(const T& value) {
        bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    template <class T>
    void put(const std::vector<T>& values) {
        for (const T& value : values) put(value);
    }
    void putHeader(const std::vector<std::u32string>& sourceNames) {
        put(Word{9}), put(Word{0}), put(0.25), put(Word{5}), put(false);
        put(std::array<std::uint16_t, 3>{255, 254, 253});
        put(std::array{99.5, 1.0, 1.0, 1.0, 0.0, 0.0, 0.0});
        put(Word{6}), put(Word{0}), put(Word{0});
        put(Word{sourceNames.size()});
        for (const std::u32string& name : sourceNames) {
            put(Word{name.size()});
            for (const char32_t c : name) put(c);
        }
        put(Word{54}), put(Word{3}), put(Word{1}), put(Word{2}), put(Word{1});
    }

    void putRecord(Node& node) {
        std::size_t next = 0;
        const auto member = [&](const auto&... values) {
            node.members[next++] = bytes.size();
            (put(values), ...);
        };
        std::vector<std::array<Word, 3>> path{{0, 0, 0}, {node.low[0] > 0 ? 1u : 0u, 0, 0}, {}};
        std::vector<std::array<Word, 3>> grids{{1, 1, 1}, {2, 1, 1}, {1, 1, 1}};
        path.resize(node.level + 1), grids.resize(node.level + 1);
        std::vector<double> widths;
        for (std::size_t axis = 0; axis < 3; ++axis)
            widths.insert(
                widths.end(), node.grid[axis],
                (node.high[axis] - node.low[axis]) / static_cast<double>(node.grid[axis]));
        member(node.level), member(0.5), member(path), member(grids), member(node.low);
        member(node.high), member(node.points);
        for (const Word count : node.grid) member(count);
        member(widths);
        for (int i = 0; i < 5; ++i) member(Word{0});
        member(std::vector<Word>(2 * node.grid[0] * node.grid[1] * node.grid[2]));
    }

    void putBlock(Node& node) {
        node.block = bytes.size();
        put(node.level), put(node.points);
        for (Word i = 0; i < node.points; ++i) {
            put(std::array<double, 3>{static_cast<double>(i) / 4, 1.0, 2.0});
            bytes.append(54 - 24, '\0');
        }
    }

    void patchLinks(const Node& node) {
        patch(node.members[11], node.members[0]);
        patch(node.members[12], node.block);
        patch(node.members[13], node.block + 16);
        if (node.parent >= 0) {
            const Node& parent = nodes[static_cast<std::size_t>(node.parent)];
            patch(node.members[14], parent.members[0]);
            patch(node.members[15], parent.block);
        }
        for (std::size_t child = 0; child < node.children.size(); ++child) {
            patch(node.members[16] + 16 * child, nodes[node.children[child]].members[0]);
            patch(node.members[16] + 16 * child + 8, nodes[node.children[child]].block);
        }
    }
};

}  // namespace vpc::test
