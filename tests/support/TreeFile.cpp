#include "support/TreeFile.h"

#include <algorithm>
#include <map>
#include <random>
#include <sstream>
#include <stdexcept>

namespace vpc::test {

namespace {

/// Collects findings, each with the node that it is about.
class Findings {
public:
    void check(bool holds, const TreeNode& node, const char* what) {
        if (holds) return;
        std::ostringstream text;
        text << "level " << node.level << ", record at " << node.position << ": " << what;
        texts.push_back(text.str());
    }
    void check(bool holds, const char* what) {
        if (!holds) texts.emplace_back(what);
    }
    std::vector<std::string> texts;
};

bool isInside(const PointRecord& point, const TreeNode& node) {
    for (int axis = 0; axis < 3; ++axis) {
        const auto i = static_cast<std::size_t>(axis);
        const double value = point.coordinate(axis);
        if (!(node.boxMin[i] <= value && value <= node.boxMax[i])) return false;
    }
    return true;
}

/// The position of a child within its parent's box: along the grid of the parent, child i begins
/// at i cells from the minimum and the last one ends at the maximum.
bool isCellOf(const TreeNode& child, const TreeNode& parent) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const Word cells = parent.grid[axis];
        const Word cell = child.path.back()[axis];
        if (cell >= cells) return false;
        const double width =
            (parent.boxMax[axis] - parent.boxMin[axis]) / static_cast<double>(cells);
        const double low = parent.boxMin[axis] + static_cast<double>(cell) * width;
        const double high = cell + 1 == cells
                                ? parent.boxMax[axis]
                                : parent.boxMin[axis] + static_cast<double>(cell + 1) * width;
        if (child.boxMin[axis] != low || child.boxMax[axis] != high) return false;
        const auto& widths = parent.cellWidths[axis];
        if (std::any_of(widths.begin(), widths.end(), [&](double w) { return w != width; }))
            return false;
    }
    return true;
}

bool isSameAs(const std::vector<PointRecord>& a, const std::vector<PointRecord>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const auto& p, const auto& q) { return p.bytes() == q.bytes(); });
}

}  // namespace

std::vector<PointRecord> thinned(const std::vector<PointRecord>& points, bool isKdTree) {
    if (points.size() < 3) return points;
    std::mt19937 engine(0);
    std::uniform_real_distribution<double> draw(0, isKdTree ? 2 : 4);
    std::vector<PointRecord> kept;
    for (const PointRecord& point : points)
        if (draw(engine) < 1.0) kept.push_back(point);
    if (kept.empty()) kept.push_back(points.front());
    return kept;
}

TreeFile::TreeFile(const std::string& fileBytes) : bytes_(fileBytes) {
    readHeader();
    for (auto& level : levels)
        for (TreeNode& node : level) node = readNode(static_cast<Word>(&level - levels.data()));
    if (cursor_ != pointDataPosition) throw std::runtime_error("point data position is wrong");
    for (auto& level : levels)
        for (TreeNode& node : level) readPoints(node);
    if (cursor_ != bytes_.size()) throw std::runtime_error("bytes after the last point");
}

template <class T>
T TreeFile::take() {
    if (bytes_.size() - cursor_ < sizeof(T)) throw std::runtime_error("the file ends too early");
    T value;
    std::memcpy(&value, bytes_.data() + cursor_, sizeof value);
    cursor_ += sizeof value;
    return value;
}

void TreeFile::takeTriplet(Words3& triplet) {
    for (Word& word : triplet) word = take<Word>();
}

void TreeFile::readHeader() {
    version = take<Word>();
    treeType = take<Word>();
    minimumDistance = take<double>();
    largestNodeCount = take<Word>();
    flag = take<char>() != 0;
    for (auto& colour : maxColours) colour = take<std::uint16_t>();
    maxIntensity = take<double>();
    for (double& value : furtherDoubles) value = take<double>();
    hostValue = take<Word>();
    nodeRecordsPosition = take<Word>();
    pointDataPosition = take<Word>();
    sourceNames = take<Word>();
    if (sourceNames != 0) throw std::runtime_error("there are source names");
    pointSize = take<Word>();
    const Word levelCount = take<Word>();
    if (levelCount > bytes_.size() / 8) throw std::runtime_error("more levels than the file holds");
    levels.resize(levelCount);
    for (auto& level : levels) {
        const Word nodes = take<Word>();
        if (nodes > bytes_.size() / 184) throw std::runtime_error("more nodes than the file holds");
        level.resize(nodes);
    }
    if (cursor_ != nodeRecordsPosition) throw std::runtime_error("node record position is wrong");
}

TreeNode TreeFile::readNode(Word level) {
    TreeNode node;
    node.position = cursor_;
    node.level = take<Word>();
    node.distance = take<double>();
    node.path.resize(level + 1);
    node.gridPath.resize(level + 1);
    for (Words3& triplet : node.path) takeTriplet(triplet);
    for (Words3& triplet : node.gridPath) takeTriplet(triplet);
    for (double& value : node.boxMin) value = take<double>();
    for (double& value : node.boxMax) value = take<double>();
    node.pointCount = take<Word>();
    takeTriplet(node.grid);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (node.grid[axis] > 20) throw std::runtime_error("more than 20 children on an axis");
        for (Word i = 0; i < node.grid[axis]; ++i) node.cellWidths[axis].push_back(take<double>());
    }
    node.ownPosition = take<Word>();
    node.blockPosition = take<Word>();
    node.listPosition = take<Word>();
    node.parentPosition = take<Word>();
    node.parentBlockPosition = take<Word>();
    node.children.resize(node.grid[0] * node.grid[1] * node.grid[2]);
    for (auto& entry : node.children) {
        entry[0] = take<Word>();
        entry[1] = take<Word>();
    }
    return node;
}

void TreeFile::readPoints(TreeNode& node) {
    if (node.blockPosition != cursor_) throw std::runtime_error("a point block position is wrong");
    if (take<Word>() != node.level) throw std::runtime_error("a point block has another level");
    if (take<Word>() != node.pointCount)
        throw std::runtime_error("a point block has another count");
    if (node.listPosition != cursor_) throw std::runtime_error("a point list position is wrong");
    if (node.pointCount > (bytes_.size() - cursor_) / PointRecord::size)
        throw std::runtime_error("more points than the file holds");
    for (Word i = 0; i < node.pointCount; ++i, cursor_ += PointRecord::size)
        node.points.push_back(PointRecord::fromBytes(bytes_.data() + cursor_));
}

std::vector<std::string> TreeFile::deepestPoints() const {
    std::vector<std::string> records;
    for (const TreeNode& node : levels.back())
        for (const PointRecord& point : node.points) records.push_back(point.bytes());
    std::sort(records.begin(), records.end());
    return records;
}

std::vector<std::string> TreeFile::problems() const {
    Findings found;
    found.check(version == 9 && pointSize == PointRecord::size && !flag, "header constants");
    found.check(furtherDoubles == std::array<double, 6>{1, 1, 1, 0, 0, 0}, "further doubles");
    found.check(!levels.empty() && levels.front().size() == 1, "there is not exactly one root");
    std::map<Word, const TreeNode*> nodes;
    for (const auto& level : levels)
        for (const TreeNode& node : level) nodes[node.position] = &node;

    Word largest = 0;
    for (const TreeNode& node : levels.back()) largest = std::max(largest, node.pointCount);
    found.check(largest == largestNodeCount, "largest point count of the deepest level");

    std::map<Word, std::vector<PointRecord>> handedUp;
    for (std::size_t level = 0; level < levels.size(); ++level) {
        for (const TreeNode& node : levels[level]) {
            found.check(node.level == level && node.ownPosition == node.position, node,
                        "own links");
            found.check(std::all_of(node.points.begin(), node.points.end(),
                                    [&](const auto& p) { return isInside(p, node); }),
                        node, "a point lies outside the box");
            for (std::size_t i = 0; i < node.children.size(); ++i) {
                const auto& [record, block] = node.children[i];
                if (record == 0) {  // a leaf pushed down to the deepest level
                    found.check(block == 0 && level + 1 == levels.size(), node, "child left 0");
                    continue;
                }
                const auto child = nodes.find(record);
                found.check(child != nodes.end(), node, "a child link leads to no record");
                if (child == nodes.end()) continue;
                const TreeNode& c = *child->second;
                const Words3& step = c.path.back();
                found.check(c.level == level + 1 && c.blockPosition == block &&
                                c.parentPosition == node.position,
                            node, "a child does not link back");
                found.check(step[0] + node.grid[0] * (step[1] + node.grid[1] * step[2]) == i, node,
                            "a child stands at another place than its triplet");
            }
            if (level == 0) {
                found.check(node.parentPosition == 0 && node.parentBlockPosition == 0, node,
                            "the root has a parent");
                continue;
            }
            const auto parent = nodes.find(node.parentPosition);
            found.check(parent != nodes.end(), node, "the parent link leads to no record");
            if (parent == nodes.end()) continue;
            const TreeNode& p = *parent->second;
            found.check(p.level + 1 == level && p.blockPosition == node.parentBlockPosition, node,
                        "parent links");
            found.check(
                std::equal(p.path.begin(), p.path.end(), node.path.begin()) &&
                    std::equal(p.gridPath.begin(), p.gridPath.end(), node.gridPath.begin()) &&
                    node.gridPath.back() == p.grid,
                node, "the path does not go on from the parent's");
            found.check(isCellOf(node, p), node, "the box is no cell of the parent's");
            for (const PointRecord& point : thinned(node.points, treeType == 1))
                handedUp[node.parentPosition].push_back(point);
        }
    }
    for (std::size_t level = 0; level + 1 < levels.size(); ++level)
        for (const TreeNode& node : levels[level])
            found.check(isSameAs(node.points, handedUp[node.position]), node,
                        "the points are not the thinned points of the children");
    return found.texts;
}

}  // namespace vpc::test
