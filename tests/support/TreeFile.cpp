#include "support/TreeFile.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <sstream>
#include <stdexcept>

namespace vpc::test {

namespace {

void require(bool holds, const char* otherwise) {
    if (!holds) throw std::runtime_error(otherwise);
}

/// Takes values from a file's bytes one after the other, or appends them.
class Archive {
public:
    Archive(std::string& bytes, bool reads) : bytes_(bytes), reads_(reads) {}

    template <class Value>
    void operator()(const char* name, Value& value) {
        note(name);
        char* const memory = reinterpret_cast<char*>(&value);
        if (!reads_) bytes_.append(memory, sizeof value);
        require(bytes_.size() - at_ >= sizeof value, "the file ends too early");
        std::memcpy(memory, bytes_.data() + at_, sizeof value);
        at_ += sizeof value;
    }
    /// A list whose length stands before it in the file.
    template <class Values>
    void list(const char* name, Values& values) {
        Word count = values.size();
        (*this)(name, count);
        (*this)(name, values, count);
    }
    void operator()(const char* name, std::vector<Word>& values) { list(name, values); }
    void operator()(const char* name, std::u32string& text) { list(name, text); }
    void operator()(const char* name, std::vector<std::u32string>& texts) { list(name, texts); }
    /// A list whose length follows from what comes before it.
    template <class Values>
    void operator()(const char* name, Values& values, Word count) {
        note(name);
        require(!reads_ || count <= bytes_.size() / sizeof(Word), "more than the file holds");
        values.resize(count);
        for (auto& value : values) (*this)(name, value);
    }
    void operator()(const char* name, std::array<std::vector<double>, 3>& widths,
                    const Words3& counts) {
        for (std::size_t axis = 0; axis < 3; ++axis) (*this)(name, widths[axis], counts[axis]);
    }

    /// Where each of the members begins; a new name begins a new member.
    std::vector<Word> positions;

private:
    void note(const char* name) {
        if (name != last_) positions.push_back(at_);
        last_ = name;
    }

    std::string& bytes_;
    bool reads_;
    std::size_t at_ = 0;
    const char* last_ = nullptr;
};

/// Turns values into text.
class Teller {
public:
    template <class Value, class... Counts>
    void operator()(const char* name, const Value& value, const Counts&...) {
        text_.str("");
        text_.precision(17);
        tell(value);
        fields.emplace_back(name, text_.str());
    }

    std::vector<std::pair<std::string, std::string>> fields;

private:
    template <class Value>
    void tell(const Value& value) {
        if constexpr (std::is_same_v<Value, char32_t>) {
            text_ << static_cast<Word>(value);
        } else if constexpr (std::is_arithmetic_v<Value>) {
            text_ << value;
        } else {
            text_ << '[';
            for (const auto& one : value) text_ << ' ', tell(one);
            text_ << " ]";
        }
    }

    std::ostringstream text_;
};

/// The first member in which two values of a kind differ, as a line of text; empty when none
/// differs.
template <class Kind>
std::string firstDifference(const std::string& where, const Kind& made, const Kind& expected) {
    Teller a, b;
    Kind::visit(made, a);
    Kind::visit(expected, b);
    for (std::size_t i = 0; i < a.fields.size(); ++i)
        if (a.fields[i].second != b.fields[i].second)
            return "\n" + where + ": " + a.fields[i].first + " is " + a.fields[i].second +
                   ", expected " + b.fields[i].second;
    return "";
}

std::string firstDifference(const TreeFile& made, const TreeFile& expected) {
    std::string records, points;
    for (std::size_t level = 0; level < std::min(made.levels.size(), expected.levels.size());
         ++level) {
        const auto &nodes = made.levels[level], &others = expected.levels[level];
        for (std::size_t n = 0; n < std::min(nodes.size(), others.size()); ++n) {
            const std::string where =
                "node " + std::to_string(n) + " of level " + std::to_string(level);
            if (records.empty()) records = firstDifference(where, nodes[n], others[n]);
            const auto &p = nodes[n].points, &q = others[n].points;
            for (std::size_t i = 0; points.empty() && i < std::min(p.size(), q.size()); ++i)
                points = firstDifference("point " + std::to_string(i) + " of " + where, p[i], q[i]);
        }
    }
    return firstDifference("header", made, expected) + records + points;
}

}  // namespace

TreeFile::TreeFile(const std::string& bytes) {
    std::string read = bytes;
    Archive reader(read, true);
    visit(*this, reader);
    for (const Word count : nodeCounts) {
        require(count <= bytes.size() / 184, "a count of more than the file holds");
        levels.emplace_back(count);
    }
    for (auto& level : levels)
        for (TreeNode& node : level) TreeNode::visit(node, reader);
    for (auto& level : levels)
        for (TreeNode& node : level) {
            Word levelAgain = 0, count = 0;
            reader("level", levelAgain), reader("count", count);
            require(levelAgain == node.level && count == node.pointCount, "not the node's block");
            require(count <= bytes.size() / PointRecord::size, "more points than the file holds");
            node.points.resize(count);
            for (PointRecord& point : node.points) PointRecord::visit(point, reader);
        }
}

std::string TreeFile::bytes(std::vector<std::vector<Word>>* memberPositions) {
    nodeCounts.clear();
    largestNodeCount = 0;
    for (auto& level : levels) nodeCounts.push_back(level.size());
    for (const TreeNode& node : levels.back())
        largestNodeCount = std::max<Word>(largestNodeCount, node.points.size());
    // The positions are known only after a first writing; the second one gets them right.
    std::string out;
    for (int round = 0; round < 2; ++round) {
        link();
        out.clear();
        Archive writer(out, false);
        visit(*this, writer);
        recordsPosition = out.size();
        for (auto& level : levels)
            for (TreeNode& node : level) {
                node.ownPosition = out.size();
                writer.positions.clear();
                TreeNode::visit(node, writer);
                if (round == 1 && memberPositions != nullptr)
                    memberPositions->push_back(writer.positions);
            }
        pointDataPosition = out.size();
        for (auto& level : levels)
            for (TreeNode& node : level) {
                node.blockPosition = out.size();
                node.listPosition = node.blockPosition + 16;
                writer("level", node.level), writer("count", node.pointCount);
                for (PointRecord& point : node.points) PointRecord::visit(point, writer);
            }
    }
    return out;
}

/// Sets what the nodes say of themselves and of one another.
void TreeFile::link() {
    std::map<std::vector<Words3>, TreeNode*> parents;
    for (auto& level : levels) {
        std::map<std::vector<Words3>, TreeNode*> nodes;
        for (TreeNode& node : level) {
            node.level = node.path.size() - 1;
            node.pointCount = node.points.size();
            node.children.assign(node.grid[0] * node.grid[1] * node.grid[2], {0, 0});
            for (std::size_t axis = 0; axis < 3; ++axis)
                node.cellWidths[axis].assign(
                    node.grid[axis],
                    (node.boxMax[axis] - node.boxMin[axis]) / static_cast<double>(node.grid[axis]));
            nodes[node.path] = &node;
            if (node.level == 0) continue;
            TreeNode& parent = *parents.at({node.path.begin(), node.path.end() - 1});
            node.parentPosition = parent.ownPosition;
            node.parentBlockPosition = parent.blockPosition;
            const auto& [x, y, z] = node.path.back();
            parent.children.at((z * parent.grid[1] + y) * parent.grid[0] + x) = {
                node.ownPosition, node.blockPosition};
        }
        parents.swap(nodes);
    }
}

std::vector<PointRecord> TreeFile::pointsOf(std::size_t level) const {
    std::vector<PointRecord> points;
    for (const TreeNode& node : levels.at(level))
        points.insert(points.end(), node.points.begin(), node.points.end());
    return points;
}

testing::AssertionResult isTree(const std::string& made, const std::string& expected) {
    if (made == expected) return testing::AssertionSuccess();
    std::string difference;
    try {
        difference = firstDifference(TreeFile(made), TreeFile(expected));
    } catch (const std::exception& error) {
        difference = std::string("it cannot be read: ") + error.what();
    }
    return testing::AssertionFailure() << "the tree file has " << made.size() << " bytes, expected "
                                       << expected.size() << difference;
}

}  // namespace vpc::test
