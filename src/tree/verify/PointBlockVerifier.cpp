#include "tree/verify/PointBlockVerifier.h"

#include <algorithm>
#include <array>
#include <cstring>

#include <wx/translation.h>

#include "core/geometry/VpcPoint3D.h"
#include "core/util/ValueAt.h"
#include "tree/verify/NodeName.h"

namespace vpc {

namespace Layout = PointTreeLayout;

namespace {

constexpr unsigned long long pointsAtATime = 16384;

bool contains(const NodeRecord& node, const std::array<double, 3>& point) {
    // Written so that a coordinate that is not a number lies in no box.
    return point[0] >= node.boxMinimum[0] && point[0] <= node.boxMaximum[0] &&
           point[1] >= node.boxMinimum[1] && point[1] <= node.boxMaximum[1] &&
           point[2] >= node.boxMinimum[2] && point[2] <= node.boxMaximum[2];
}

/// Bytes of a block; the file's size where a wrong count makes it larger than any file.
unsigned long long blockSize(unsigned long long points, unsigned long long fileSize) {
    const unsigned long long recordSize = VpcPoint3D::SerializeDiskSize();
    if (points > fileSize / recordSize) return fileSize;
    return Layout::pointBlockHeaderSize + points * recordSize;
}

}  // namespace

PointBlockVerifier::PointBlockVerifier(PointTreeReader& file, unsigned long long pointData,
                                       const FindingSink& sink)
    : file_(file), window_(file), sink_(sink), expected_(pointData) {
}

void PointBlockVerifier::Add(const NodeRecord& record) {
    CheckPosition(record);
    CheckBlock(record);
    CheckPoints(record);
}

void PointBlockVerifier::Finish() {
    const unsigned long long size = file_.Size();
    if (expected_ == size || (alternative_ != 0 && alternative_ == size)) return;
    sink_({FindingKind::File,
           expected_ > size
               ? wxString::Format(_("the file is cut short: it has %llu of %llu bytes"), size,
                                  expected_)
               : wxString::Format(_("the last point block ends at %llu and the file at %llu"),
                                  expected_, size)});
}

void PointBlockVerifier::CheckPosition(const NodeRecord& record) {
    const unsigned long long size = blockSize(record.points, file_.Size());
    if (record.pointList != record.pointBlock + Layout::pointBlockHeaderSize)
        sink_({FindingKind::Position,
               wxString::Format(_("%s has its point block at %llu and its point list at %llu"),
                                nodeName(record), record.pointBlock, record.pointList)});
    if (record.pointBlock == expected_ ||
        (alternative_ != 0 && record.pointBlock == alternative_)) {
        expected_ = record.pointBlock + size;
        alternative_ = 0;
        return;
    }
    sink_({FindingKind::Position,
           wxString::Format(_("%s has its point block at %llu, expected at %llu"), nodeName(record),
                            record.pointBlock, expected_)});
    alternative_ = record.pointBlock < file_.Size() ? record.pointBlock + size : 0;
    expected_ += size;
}

void PointBlockVerifier::CheckBlock(const NodeRecord& record) {
    const auto fault = [this](const wxString& text) { sink_({FindingKind::PointBlock, text}); };
    const char* bytes = window_.Bytes(record.pointBlock, Layout::pointBlockHeaderSize);
    if (bytes == nullptr)
        return fault(wxString::Format(_("%s has its point block beyond the end of the file"),
                                      nodeName(record)));
    const auto level = valueAt<unsigned long long>(bytes);
    const auto points = valueAt<unsigned long long>(bytes + Layout::wordSize);
    if (level != record.level)
        fault(wxString::Format(_("%s has a point block for level %llu"), nodeName(record), level));
    if (points != record.points)
        fault(wxString::Format(_("%s has %llu points, its point block %llu"), nodeName(record),
                               record.points, points));
}

void PointBlockVerifier::CheckPoints(const NodeRecord& record) {
    const unsigned long long recordSize = VpcPoint3D::SerializeDiskSize();
    unsigned long long outside = 0;
    unsigned long long firstOutside = 0;
    unsigned long long position = record.pointBlock + Layout::pointBlockHeaderSize;
    for (unsigned long long done = 0; done < record.points;) {
        const unsigned long long count = std::min(pointsAtATime, record.points - done);
        const char* bytes = window_.Bytes(position, count * recordSize);
        if (bytes == nullptr) {
            sink_({FindingKind::PointBlock,
                   wxString::Format(_("%s has points beyond the end of the file"),
                                    nodeName(record))});
            return;
        }
        for (unsigned long long i = 0; i < count; ++i) {
            std::array<double, 3> point{};
            std::memcpy(point.data(), bytes + i * recordSize, sizeof point);
            if (contains(record, point)) continue;
            if (outside++ == 0) firstOutside = done + i;
        }
        position += count * recordSize;
        done += count;
    }
    if (outside > 0)
        sink_({FindingKind::Point,
               wxString::Format(
                   _("%llu of %llu points of %s lie outside its box, the first is point %llu"),
                   outside, record.points, nodeName(record), firstOutside)});
}

}  // namespace vpc
