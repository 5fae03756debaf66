#include "support/TreeFile.h"

#include <random>
#include <stdexcept>

namespace vpc::test {

namespace {

void require(bool holds, const char* otherwise) {
    if (!holds) throw std::runtime_error(otherwise);
}

/// Takes values from a file, one after the other.
class Cursor {
public:
    explicit Cursor(const std::string& bytes) : bytes_(bytes) {}

    template <class... Values>
    void take(Values&... values) {
        (takeOne(values), ...);
    }
    /// Takes a count of things that take `size` bytes each, which the file has to have room for.
    Word takeCount(std::size_t size) {
        Word count = 0;
        take(count);
        require(count <= bytes_.size() / size, "a count of more than the file holds");
        return count;
    }
    std::size_t position() const { return at_; }
    const char* skip(std::size_t size) {
        require(bytes_.size() - at_ >= size, "the file ends too early");
        at_ += size;
        return bytes_.data() + at_ - size;
    }

private:
    template <class Value>
    void takeOne(Value& value) {
        std::memcpy(&value, skip(sizeof value), sizeof value);
    }
    template <class Value>
    void takeOne(std::vector<Value>& values) {
        for (Value& value : values) take(value);
    }

    const std::string& bytes_;
    std::size_t at_ = 0;
};

void takeNode(Cursor& cursor, TreeNode& node) {
    cursor.take(node.level, node.distance);
    node.path.resize(node.level + 1);
    node.gridPath.resize(node.level + 1);
    cursor.take(node.path, node.gridPath, node.boxMin, node.boxMax, node.pointCount, node.grid);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        require(node.grid[axis] <= 20, "more than 20 children on an axis");
        node.cellWidths[axis].resize(node.grid[axis]);
        cursor.take(node.cellWidths[axis]);
    }
    node.children.resize(node.grid[0] * node.grid[1] * node.grid[2]);
    cursor.take(node.ownPosition, node.blockPosition, node.listPosition, node.parentPosition,
                node.parentBlockPosition, node.children);
}

void takePoints(Cursor& cursor, TreeNode& node) {
    require(node.blockPosition == cursor.position(), "a point block position is wrong");
    Word level = 0;
    cursor.take(level);
    const Word count = cursor.takeCount(PointRecord::size);
    require(level == node.level && count == node.pointCount, "a block is not its node's");
    require(node.listPosition == cursor.position(), "a point list position is wrong");
    for (Word i = 0; i < count; ++i)
        node.points.push_back(PointRecord::fromBytes(cursor.skip(PointRecord::size)));
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

TreeFile::TreeFile(const std::string& bytes) {
    Cursor cursor(bytes);
    cursor.skip(103);  // what is known of the points, which the records do not depend on
    Word nodeRecordsPosition = 0, sourceNames = 0, pointSize = 0;
    cursor.take(nodeRecordsPosition, pointDataPosition, sourceNames, pointSize);
    require(sourceNames == 0 && pointSize == PointRecord::size, "another kind of file");
    levels.resize(cursor.takeCount(sizeof(Word)));
    for (auto& level : levels) level.resize(cursor.takeCount(184));
    require(cursor.position() == nodeRecordsPosition, "node record position is wrong");
    for (auto& level : levels)
        for (TreeNode& node : level) {
            const std::size_t position = cursor.position();
            takeNode(cursor, node);
            require(node.ownPosition == position, "a node's own position is wrong");
        }
    require(cursor.position() == pointDataPosition, "point data position is wrong");
    for (auto& level : levels)
        for (TreeNode& node : level) takePoints(cursor, node);
    require(cursor.position() == bytes.size(), "bytes after the last point");
}

std::vector<PointRecord> TreeFile::pointsOf(std::size_t level) const {
    std::vector<PointRecord> points;
    for (const TreeNode& node : levels.at(level))
        points.insert(points.end(), node.points.begin(), node.points.end());
    return points;
}

}  // namespace vpc::test
