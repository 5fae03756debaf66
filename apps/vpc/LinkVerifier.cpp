#include "vpc/LinkVerifier.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/geometry/VpcNumMathTools.h"

namespace vpc {

namespace {

using Triplet = NodeRecord::Triplet;

constexpr const char* parentLink = "parent link";
constexpr const char* childLink = "child link";

/// How far a box may be from its cell, as a share of the coordinates' size: room for rounding.
constexpr double cellTolerance = 1e-12;

unsigned long long hashOf(const std::vector<Triplet>& path, std::size_t steps) {
    unsigned long long hash = 0;
    for (std::size_t i = 0; i < steps; ++i)
        for (const unsigned long long step : path[i]) VpcNumMathTools::CombineHash(hash, step);
    return hash;
}

Triplet toTriplet(const PointTreeLayout::ChildGrid& grid) {
    return {grid.x, grid.y, grid.z};
}

}  // namespace

std::string nodeName(unsigned long long level, unsigned long long index) {
    return "node " + std::to_string(index) + " of level " + std::to_string(level);
}

void LinkVerifier::Add(const NodeRecord& record) {
    if (record.level != currentLevel_) {
        FinishParents(false);
        std::swap(parents_, current_);
        current_.Clear();
        currentLevel_ = record.level;
    }
    if (record.level == 0)
        CheckRoot(record);
    else
        CheckParent(record);
    Keep(record);
}

void LinkVerifier::Finish() {
    FinishParents(false);
    std::swap(parents_, current_);
    FinishParents(true);
}

unsigned long long LinkVerifier::LargestNodeOfLevel() const {
    unsigned long long largest = 0;
    for (const Node& node : current_.nodes) largest = std::max(largest, node.points);
    return largest;
}

void LinkVerifier::CheckRoot(const NodeRecord& record) {
    if (record.parentRecord != 0 || record.parentPointBlock != 0)
        findings_.Add(parentLink,
                      nodeName(record.level, record.index) + " is a root and names a parent");
}

void LinkVerifier::CheckParent(const NodeRecord& record) {
    const std::string name = nodeName(record.level, record.index);
    Node* parent = Find(parents_, record.parentRecord);
    if (parent == nullptr) {
        findings_.Add(parentLink, name + " names a parent record at " +
                                      std::to_string(record.parentRecord) +
                                      ", where the level above has none");
        return;
    }
    if (record.parentPointBlock != parent->pointBlock)
        findings_.Add(parentLink, name + " has its parent's point block at " +
                                      std::to_string(record.parentPointBlock) +
                                      ", the parent itself at " +
                                      std::to_string(parent->pointBlock));
    if (hashOf(record.indexPath, record.level) != parent->indexPathHash ||
        hashOf(record.gridPath, record.level) != parent->gridPathHash)
        findings_.Add("path", name + " has a path that does not lead over its parent");
    CheckPlace(record, *parent);
}

void LinkVerifier::CheckPlace(const NodeRecord& record, Node& parent) {
    const std::string name = nodeName(record.level, record.index);
    const Triplet cell = record.indexPath.back();
    const Triplet grid = toTriplet(parent.grid);
    if (record.gridPath.back() != grid)
        findings_.Add("path", name + " tells another grid for its parent than the parent");
    if (cell[0] >= grid[0] || cell[1] >= grid[1] || cell[2] >= grid[2]) {
        findings_.Add("path", name + " lies in a cell that its parent's grid does not have");
        return;
    }
    const unsigned long long number = cell[0] + grid[0] * (cell[1] + grid[1] * cell[2]);
    const NodeRecord::ChildEntry& entry = parents_.entries[parent.firstEntry + number];
    if (entry.record != record.position || entry.pointBlock != record.pointBlock)
        findings_.Add(childLink, nodeName(parent.level, parent.index) + " has its child " +
                                     std::to_string(number) + " at " +
                                     std::to_string(entry.record) + " and " +
                                     std::to_string(entry.pointBlock) + ", but " + name +
                                     " is at " + std::to_string(record.position) + " and " +
                                     std::to_string(record.pointBlock));
    ++parent.childrenSeen;
    parent.childPoints += record.points;
    CheckBox(record, parent, cell);
}

void LinkVerifier::CheckBox(const NodeRecord& record, const Node& parent, const Triplet& cell) {
    const std::string name = nodeName(record.level, record.index);
    const Triplet grid = toTriplet(parent.grid);
    bool inside = true;
    bool fits = true;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double low = parent.boxMinimum[axis];
        const double high = parent.boxMaximum[axis];
        inside = inside && record.boxMinimum[axis] >= low && record.boxMaximum[axis] <= high;
        const double width = (high - low) / static_cast<double>(grid[axis]);
        const double from = low + static_cast<double>(cell[axis]) * width;
        const double to = low + static_cast<double>(cell[axis] + 1) * width;
        const double tolerance = cellTolerance * std::max(std::abs(low), std::abs(high));
        fits = fits && std::abs(record.boxMinimum[axis] - from) <= tolerance &&
               std::abs(record.boxMaximum[axis] - to) <= tolerance;
    }
    if (!inside)
        findings_.Add("box", name + " reaches out of its parent's box");
    else if (!fits)
        findings_.Add("box", name + " does not fill its cell of its parent's grid");
}

void LinkVerifier::FinishParents(bool deepest) {
    for (const Node& node : parents_.nodes) CheckChildren(node, parents_, deepest);
}

void LinkVerifier::CheckChildren(const Node& node, const Level& level, bool deepest) {
    const std::string name = nodeName(node.level, node.index);
    const unsigned long long cells = node.grid.cells();
    const auto first = level.entries.begin() + static_cast<std::ptrdiff_t>(node.firstEntry);
    const auto last = first + static_cast<std::ptrdiff_t>(cells);
    const auto named = static_cast<unsigned long long>(std::count_if(
        first, last, [](const auto& entry) { return entry.record != 0 || entry.pointBlock != 0; }));
    if (deepest) {
        if (cells > 1 || named > 0)
            findings_.Add(childLink, name + " is in the deepest level and names children");
        return;
    }
    if (named != cells || node.childrenSeen != cells)
        findings_.Add(childLink, name + " has " + std::to_string(cells) + " cells, names " +
                                     std::to_string(named) + " children and is named by " +
                                     std::to_string(node.childrenSeen));
    if (!std::is_sorted(first, last,
                        [](const auto& a, const auto& b) { return a.record < b.record; }))
        findings_.Add(childLink, name + " does not have its children in the order of its cells");
    if (cells > 0 && node.points > node.childPoints)
        findings_.Add("point count", name + " has more points (" + std::to_string(node.points) +
                                         ") than its children (" +
                                         std::to_string(node.childPoints) + ")");
    if (cells == 0 && node.points > 0)
        findings_.Add("point count",
                      name + " has points and no children, but is not in the deepest level");
}

void LinkVerifier::Keep(const NodeRecord& record) {
    Node node;
    node.level = record.level;
    node.index = record.index;
    node.position = record.position;
    node.pointBlock = record.pointBlock;
    node.points = record.points;
    node.indexPathHash = hashOf(record.indexPath, record.indexPath.size());
    node.gridPathHash = hashOf(record.gridPath, record.gridPath.size());
    node.boxMinimum = record.boxMinimum;
    node.boxMaximum = record.boxMaximum;
    node.grid = record.grid;
    node.firstEntry = current_.entries.size();
    current_.nodes.push_back(node);
    current_.entries.insert(current_.entries.end(), record.children.begin(), record.children.end());
}

LinkVerifier::Node* LinkVerifier::Find(Level& level, unsigned long long position) {
    const auto found = std::lower_bound(
        level.nodes.begin(), level.nodes.end(), position,
        [](const Node& node, unsigned long long wanted) { return node.position < wanted; });
    return found == level.nodes.end() || found->position != position ? nullptr : &*found;
}

}  // namespace vpc
