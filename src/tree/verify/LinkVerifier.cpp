#include "tree/verify/LinkVerifier.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <wx/translation.h>

#include "core/geometry/VpcNumMathTools.h"
#include "tree/verify/NodeName.h"

namespace vpc {

namespace {

using Triplet = NodeRecord::Triplet;

/// How far a box may be from its cell, as a share of the coordinates' size: room for rounding.
constexpr double cellTolerance = 1e-12;

unsigned long long hashOf(const std::vector<Triplet>& path, std::size_t steps) {
    unsigned long long hash = 0;
    for (std::size_t i = 0; i < steps; ++i)
        for (const unsigned long long step : path[i]) VpcNumMathTools::CombineHash(hash, step);
    return hash;
}

/// How many of the entries name a child.
unsigned long long namedEntries(std::span<const NodeRecord::ChildEntry> entries) {
    return static_cast<unsigned long long>(
        std::count_if(entries.begin(), entries.end(), [](const NodeRecord::ChildEntry& entry) {
            return entry.record != 0 || entry.pointBlock != 0;
        }));
}

Triplet toTriplet(const PointTreeLayout::ChildGrid& grid) {
    return {grid.x, grid.y, grid.z};
}

}  // namespace

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
        sink_({FindingKind::ParentLink,
               wxString::Format(_("%s is a root and names a parent"), nodeName(record))});
}

void LinkVerifier::CheckParent(const NodeRecord& record) {
    Node* parent = Find(parents_, record.parentRecord);
    if (parent == nullptr) {
        sink_(
            {FindingKind::ParentLink,
             wxString::Format(_("%s names a parent record at %llu, where the level above has none"),
                              nodeName(record), record.parentRecord)});
        return;
    }
    if (record.parentPointBlock != parent->pointBlock)
        sink_({FindingKind::ParentLink,
               wxString::Format(
                   _("%s has its parent's point block at %llu, the parent itself at %llu"),
                   nodeName(record), record.parentPointBlock, parent->pointBlock)});
    if (hashOf(record.indexPath, record.level) != parent->indexPathHash ||
        hashOf(record.gridPath, record.level) != parent->gridPathHash)
        sink_({FindingKind::Path,
               wxString::Format(_("%s has a path that does not lead over its parent"),
                                nodeName(record))});
    CheckPlace(record, *parent);
}

void LinkVerifier::CheckPlace(const NodeRecord& record, Node& parent) {
    const Triplet cell = record.indexPath.back();
    const Triplet grid = toTriplet(parent.grid);
    if (record.gridPath.back() != grid)
        sink_({FindingKind::Path,
               wxString::Format(_("%s tells another grid for its parent than the parent"),
                                nodeName(record))});
    if (cell[0] >= grid[0] || cell[1] >= grid[1] || cell[2] >= grid[2]) {
        sink_({FindingKind::Path,
               wxString::Format(_("%s lies in a cell that its parent's grid does not have"),
                                nodeName(record))});
        return;
    }
    const unsigned long long number = cell[0] + grid[0] * (cell[1] + grid[1] * cell[2]);
    const NodeRecord::ChildEntry& entry = parents_.entries[parent.firstEntry + number];
    if (entry.record != record.position || entry.pointBlock != record.pointBlock)
        sink_({FindingKind::ChildLink,
               wxString::Format(
                   _("%s has its child %llu at %llu and %llu, but %s is at %llu and %llu"),
                   nodeName(parent.level, parent.index), number, entry.record, entry.pointBlock,
                   nodeName(record), record.position, record.pointBlock)});
    ++parent.childrenSeen;
    parent.childPoints += record.points;
    CheckBox(record, parent, cell);
}

void LinkVerifier::CheckBox(const NodeRecord& record, const Node& parent, const Triplet& cell) {
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
        sink_({FindingKind::Box,
               wxString::Format(_("%s reaches out of its parent's box"), nodeName(record))});
    else if (!fits)
        sink_(
            {FindingKind::Box, wxString::Format(_("%s does not fill its cell of its parent's grid"),
                                                nodeName(record))});
}

void LinkVerifier::FinishParents(bool deepest) {
    for (const Node& node : parents_.nodes) {
        const auto entries =
            std::span(parents_.entries).subspan(node.firstEntry, node.grid.cells());
        if (deepest)
            CheckChainEnd(node, entries);
        else
            CheckChildren(node, entries);
    }
}

void LinkVerifier::CheckChainEnd(const Node& node, Entries entries) {
    if (entries.size() > 1 || namedEntries(entries) > 0)
        sink_({FindingKind::ChildLink,
               wxString::Format(_("%s is in the deepest level and names children"),
                                nodeName(node.level, node.index))});
}

void LinkVerifier::CheckChildren(const Node& node, Entries entries) {
    const auto fault = [&](FindingKind kind, const wxString& text) { sink_({kind, text}); };
    const auto name = [&] { return nodeName(node.level, node.index); };
    const unsigned long long cells = entries.size();
    const unsigned long long named = namedEntries(entries);
    if (named != cells || node.childrenSeen != cells)
        fault(FindingKind::ChildLink,
              wxString::Format(_("%s has %llu cells, names %llu children and is named by %llu"),
                               name(), cells, named, node.childrenSeen));
    const auto standsBefore = [](const auto& a, const auto& b) { return a.record < b.record; };
    if (!std::is_sorted(entries.begin(), entries.end(), standsBefore))
        fault(
            FindingKind::ChildLink,
            wxString::Format(_("%s does not have its children in the order of its cells"), name()));
    if (cells > 0 && node.points > node.childPoints)
        fault(FindingKind::PointCount,
              wxString::Format(_("%s has more points (%llu) than its children (%llu)"), name(),
                               node.points, node.childPoints));
    if (cells == 0 && node.points > 0)
        fault(FindingKind::PointCount,
              wxString::Format(_("%s has points and no children, but is not in the deepest level"),
                               name()));
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
