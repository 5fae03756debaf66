#include "tree/verify/TreeVerifier.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <wx/translation.h>

#include "core/geometry/VpcPoint3D.h"
#include "tree/file/NodeRecordReader.h"
#include "tree/file/PointTreeLayout.h"
#include "tree/verify/NodeName.h"
#include "tree/verify/PointBlockVerifier.h"

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

TreeVerifier::TreeVerifier(PointTreeReader& file, FindingSink sink, Progress progress)
    : file_(file), sink_(std::move(sink)), progress_(std::move(progress)), links_(sink_) {
}

void TreeVerifier::Run() {
    try {
        file_.RequireVersion();
        CheckHeader();
        CheckShape();
        CheckRecords();
        if (file_.Header().pointRecordSize == VpcPoint3D::SerializeDiskSize()) CheckPointBlocks();
    } catch (const IoError& failure) {
        sink_({FindingKind::File, Explained(failure)});
    }
}

wxString TreeVerifier::Explained(const IoError& failure) {
    if (failure.SystemReason() != 0 || file_.Version() != Layout::version) return failure.Message();
    unsigned long long pointData = 0;
    const bool isKnown = ReadWord(Layout::pointDataWordPosition, pointData);
    if (isKnown && pointData <= file_.Size()) return failure.Message();
    return wxString::Format(_("the file is cut short, it has %llu bytes: %s"), file_.Size(),
                            failure.Message());
}

bool TreeVerifier::ReadWord(unsigned long long position, unsigned long long& word) {
    return file_.Read(position, reinterpret_cast<char*>(&word), sizeof word) == sizeof word;
}

void TreeVerifier::CheckHeader() {
    const auto fault = [this](const wxString& text) { sink_({FindingKind::Header, text}); };
    const PointTreeHeader& header = file_.Header();
    // PointTreeHeader keeps only the lower half of this word.
    unsigned long long treeType = 0;
    if (!ReadWord(Layout::treeTypePosition, treeType)) file_.FailReading();
    if (treeType > 1) fault(wxString::Format(_("the tree type is %llu, not 0 or 1"), treeType));
    if (!std::isfinite(header.minimumDistance) || header.minimumDistance <= 0.0)
        fault(_("the minimum point distance is not a positive number"));
    if (std::isnan(header.maxIntensity)) fault(_("the largest intensity is not a number"));
    constexpr unsigned long long recordSize = VpcPoint3D::SerializeDiskSize();
    if (header.pointRecordSize != recordSize)
        fault(wxString::Format(_("a point record takes %llu bytes, not %llu"),
                               header.pointRecordSize, recordSize));
    if (header.nodeRecordsWord != header.firstNodeRecord)
        fault(wxString::Format(_("the node records are said to begin at %llu and begin at %llu"),
                               header.nodeRecordsWord, header.firstNodeRecord));
}

void TreeVerifier::CheckShape() {
    const auto fault = [this](const wxString& text) { sink_({FindingKind::Header, text}); };
    const std::vector<unsigned long long>& nodes = file_.Header().nodeCounts;
    if (nodes.empty()) return fault(_("the tree has no levels"));
    if (nodes.front() != 1)
        fault(wxString::Format(_("level 0 has %llu nodes instead of a root"), nodes.front()));
    for (std::size_t level = 1; level < nodes.size(); ++level)
        if (nodes[level] == 0)
            fault(
                wxString::Format(_("level %llu is empty"), static_cast<unsigned long long>(level)));
}

void TreeVerifier::CheckRecords() {
    const PointTreeHeader& header = file_.Header();
    NodeRecordReader reader(file_);
    NodeRecord record;
    while (reader.Next(record)) {
        CheckRecord(record);
        links_.Add(record);
    }
    if (links_.LargestNodeOfLevel() != header.largestNodeCount)
        sink_({FindingKind::PointCount,
               wxString::Format(
                   _("the fullest node of the deepest level has %llu points, the header says %llu"),
                   links_.LargestNodeOfLevel(), header.largestNodeCount)});
    links_.Finish();
    pointData_ = reader.Position();
    if (header.pointDataWord != pointData_)
        sink_({FindingKind::Header,
               wxString::Format(_("the point blocks are said to begin at %llu and begin at %llu"),
                                header.pointDataWord, pointData_)});
}

void TreeVerifier::CheckRecord(const NodeRecord& record) {
    if (record.levelWord != record.level)
        sink_({FindingKind::Record, wxString::Format(_("%s says it is of level %llu"),
                                                     nodeName(record), record.levelWord)});
    if (record.recordPosition != record.position)
        sink_({FindingKind::Position,
               wxString::Format(_("%s says its record is at %llu, it is at %llu"), nodeName(record),
                                record.recordPosition, record.position)});
    if (!std::isfinite(record.minimumDistance) || record.minimumDistance < 0.0)
        sink_({FindingKind::Record,
               wxString::Format(_("%s has a minimum point distance that is negative or not finite"),
                                nodeName(record))});
    if (!boxHolds(record))
        sink_({FindingKind::Box,
               wxString::Format(_("%s has a box with corners in the wrong order or not finite"),
                                nodeName(record))});
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
        sink_({FindingKind::Path,
               wxString::Format(_("%s has a path that does not begin at the root or leaves a grid"),
                                nodeName(record))});
}

void TreeVerifier::CheckGrid(const NodeRecord& record) {
    const Layout::ChildGrid& grid = record.grid;
    if (isZero(grid)) return;
    if (grid.cells() == 0) {
        sink_({FindingKind::Grid,
               wxString::Format(_("%s has a grid of children without cells"), nodeName(record))});
        return;
    }
    const std::vector<double>& widths = record.cellWidths;
    const auto extent = [&](std::size_t axis) {
        return record.boxMaximum[axis] - record.boxMinimum[axis];
    };
    if (!widthsFit(widths, 0, grid.x, extent(0)) || !widthsFit(widths, grid.x, grid.y, extent(1)) ||
        !widthsFit(widths, grid.x + grid.y, grid.z, extent(2)))
        sink_(
            {FindingKind::Grid, wxString::Format(_("%s has cell widths that do not divide its box"),
                                                 nodeName(record))});
}

void TreeVerifier::CheckPointBlocks() {
    NodeRecordReader reader(file_);
    PointBlockVerifier blocks(file_, pointData_, sink_);
    NodeRecord record;
    while (reader.Next(record)) {
        blocks.Add(record);
        if (progress_) progress_(record.points);
    }
    blocks.Finish();
}

}  // namespace vpc
