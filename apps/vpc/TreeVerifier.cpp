#include "vpc/TreeVerifier.h"

#include <algorithm>
#include <cmath>

#include "core/geometry/VpcPoint3D.h"
#include "core/util/FileTools.h"
#include "core/util/ValueAt.h"
#include "tree/disk/VpcDiskTreeQuerier.h"
#include "tree/file/NodeRecordReader.h"
#include "vpc/PointBlockVerifier.h"

namespace vpc {

namespace Layout = PointTreeLayout;

namespace {

/// Relative deviation that a cell width may have from its computed value.
constexpr double widthTolerance = 1e-9;

bool isZero(const Layout::ChildGrid& grid) {
    return grid.x == 0 && grid.y == 0 && grid.z == 0;
}

/// Whether the widths are `count` times the cell of an axis that is cut into `count`.
bool widthsFit(const std::vector<double>& widths, std::size_t first, unsigned long long count,
               double extent) {
    const double width = extent / static_cast<double>(count);
    const auto from = widths.begin() + static_cast<std::ptrdiff_t>(first);
    return std::all_of(from, from + static_cast<std::ptrdiff_t>(count),
                       [&](double w) { return std::abs(w - width) <= widthTolerance * width; });
}

bool boxHolds(const NodeRecord& record) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double low = record.boxMinimum[axis];
        const double high = record.boxMaximum[axis];
        if (!std::isfinite(low) || !std::isfinite(high) || low > high) return false;
    }
    return true;
}

}  // namespace

TreeVerifier::TreeVerifier(const VpcDiskTreeQuerier& querier, Findings& findings)
    : querier_(querier), header_(querier.header()), findings_(findings), links_(findings) {
}

void TreeVerifier::Run() {
    // Each step needs what the one before it has shown to hold.
    if (!CheckHeader() || !CheckRecords()) return;
    if (header_.pointRecordSize == VpcPoint3D::SerializeDiskSize()) CheckPointBlocks();
}

bool TreeVerifier::CheckHeader() {
    if (header_.version != Layout::version) {
        findings_.Add("header", "the version is " + std::to_string(header_.version) + ", not " +
                                    std::to_string(Layout::version));
        return false;
    }
    if (!querier_.isOpen()) {
        findings_.Add("header", "the file " + FileTools::ToNativePath(querier_.fault()));
        return false;
    }
    CheckHeaderValues();
    return true;
}

void TreeVerifier::CheckHeaderValues() {
    const auto fault = [this](const std::string& text) { findings_.Add("header", text); };
    FileWindow file(querier_.fileName());
    const char* bytes = file.Bytes(0, Layout::sourceNamesPosition);
    if (bytes == nullptr) return fault("it cannot be read");
    const auto treeType = valueAt<unsigned long long>(bytes + Layout::treeTypePosition);
    if (treeType > 1) fault("the tree type is " + std::to_string(treeType) + ", not 0 or 1");
    if (bytes[Layout::flagPosition] != 0) fault("the flag is not 0");
    if (!std::isfinite(header_.minimumDistance) || header_.minimumDistance <= 0.0)
        fault("the minimum point distance is not a positive number");
    if (std::isnan(header_.maxIntensity)) fault("the largest intensity is not a number");
    if (header_.pointRecordSize != VpcPoint3D::SerializeDiskSize())
        fault("a point record takes " + std::to_string(header_.pointRecordSize) + " bytes, not " +
              std::to_string(VpcPoint3D::SerializeDiskSize()));
    if (header_.levels == 0) fault("the tree has no levels");
    if (header_.levels > 0 && header_.nodeCounts[0] != 1)
        fault("level 0 has " + std::to_string(header_.nodeCounts[0]) + " nodes instead of a root");
    for (unsigned long long level = 1; level < header_.levels; ++level)
        if (header_.nodeCounts[level] == 0) fault("level " + std::to_string(level) + " is empty");
    if (header_.nodeRecordsWord != header_.firstNodeRecord)
        fault("the node records are said to begin at " + std::to_string(header_.nodeRecordsWord) +
              " and begin at " + std::to_string(header_.firstNodeRecord));
}

bool TreeVerifier::CheckRecords() {
    NodeRecordReader reader(querier_.fileName(), header_);
    NodeRecord record;
    while (reader.Next(record)) {
        CheckRecord(record);
        links_.Add(record);
    }
    if (reader.Failed()) {
        findings_.Add("record", nodeName(reader.Level(), reader.Index()) + " has its record at " +
                                    std::to_string(reader.Position()) +
                                    ", where it does not fit in the file");
        return false;
    }
    if (links_.LargestNodeOfLevel() != header_.largestNodeCount)
        findings_.Add("point count", "the fullest node of the deepest level has " +
                                         std::to_string(links_.LargestNodeOfLevel()) +
                                         " points, the header says " +
                                         std::to_string(header_.largestNodeCount));
    links_.Finish();
    pointData_ = reader.Position();
    if (header_.pointDataWord != pointData_)
        findings_.Add("header", "the point blocks are said to begin at " +
                                    std::to_string(header_.pointDataWord) + " and begin at " +
                                    std::to_string(pointData_));
    return true;
}

void TreeVerifier::CheckRecord(const NodeRecord& record) {
    const std::string name = nodeName(record.level, record.index);
    if (record.levelWord != record.level)
        findings_.Add("record", name + " says it is of level " + std::to_string(record.levelWord));
    if (record.recordPosition != record.position)
        findings_.Add("position", name + " says its record is at " +
                                      std::to_string(record.recordPosition) + ", it is at " +
                                      std::to_string(record.position));
    if (!std::isfinite(record.minimumDistance) || record.minimumDistance < 0.0)
        findings_.Add("record", name + " has a minimum point distance that is no such number");
    if (!boxHolds(record)) findings_.Add("box", name + " has a box that is not one");
    CheckPath(record);
    CheckGrid(record);
}

void TreeVerifier::CheckPath(const NodeRecord& record) {
    bool holds = record.indexPath[0] == NodeRecord::Triplet{0, 0, 0} &&
                 record.gridPath[0] == NodeRecord::Triplet{1, 1, 1};
    for (std::size_t step = 0; step < record.indexPath.size(); ++step)
        for (std::size_t axis = 0; axis < 3; ++axis)
            holds = holds && record.indexPath[step][axis] < record.gridPath[step][axis];
    if (!holds)
        findings_.Add("path", nodeName(record.level, record.index) +
                                  " has a path that does not begin at the root or leaves a grid");
}

void TreeVerifier::CheckGrid(const NodeRecord& record) {
    const std::string name = nodeName(record.level, record.index);
    const Layout::ChildGrid& grid = record.grid;
    if (isZero(grid)) return;
    if (grid.cells() == 0) {
        findings_.Add("grid", name + " has a grid of children without cells");
        return;
    }
    const std::vector<double>& widths = record.cellWidths;
    const auto extent = [&](std::size_t axis) {
        return record.boxMaximum[axis] - record.boxMinimum[axis];
    };
    if (!widthsFit(widths, 0, grid.x, extent(0)) || !widthsFit(widths, grid.x, grid.y, extent(1)) ||
        !widthsFit(widths, grid.x + grid.y, grid.z, extent(2)))
        findings_.Add("grid", name + " has cell widths that do not divide its box");
}

void TreeVerifier::CheckPointBlocks() {
    NodeRecordReader reader(querier_.fileName(), header_);
    PointBlockVerifier blocks(querier_.fileName(), pointData_, findings_);
    NodeRecord record;
    while (reader.Next(record)) blocks.Add(record);
    if (reader.Failed())
        findings_.Add("record", nodeName(reader.Level(), reader.Index()) +
                                    " has a record that cannot be read again");
    blocks.Finish();
}

}  // namespace vpc
