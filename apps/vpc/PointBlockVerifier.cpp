#include "vpc/PointBlockVerifier.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "core/geometry/VpcPoint3D.h"
#include "vpc/LinkVerifier.h"

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

PointBlockVerifier::PointBlockVerifier(const wxString& file, unsigned long long pointData,
                                       Findings& findings)
    : file_(file), findings_(findings), expected_(pointData) {
}

void PointBlockVerifier::Add(const NodeRecord& record) {
    CheckPosition(record);
    CheckBlock(record);
    CheckPoints(record);
}

void PointBlockVerifier::Finish() {
    const unsigned long long size = file_.Size();
    if (expected_ == size || (alternative_ != 0 && alternative_ == size)) return;
    findings_.Add("file end", "the last point block ends at " + std::to_string(expected_) +
                                  " and the file at " + std::to_string(size));
}

void PointBlockVerifier::CheckPosition(const NodeRecord& record) {
    const std::string name = nodeName(record.level, record.index);
    const unsigned long long size = blockSize(record.points, file_.Size());
    if (record.pointList != record.pointBlock + Layout::pointBlockHeaderSize)
        findings_.Add("position", name + " has its point block at " +
                                      std::to_string(record.pointBlock) +
                                      " and its point list at " + std::to_string(record.pointList));
    if (record.pointBlock == expected_ ||
        (alternative_ != 0 && record.pointBlock == alternative_)) {
        expected_ = record.pointBlock + size;
        alternative_ = 0;
        return;
    }
    findings_.Add("position", name + " has its point block at " +
                                  std::to_string(record.pointBlock) + ", expected at " +
                                  std::to_string(expected_));
    alternative_ = record.pointBlock < file_.Size() ? record.pointBlock + size : 0;
    expected_ += size;
}

void PointBlockVerifier::CheckBlock(const NodeRecord& record) {
    const char* bytes = file_.Bytes(record.pointBlock, Layout::pointBlockHeaderSize);
    const std::string name = nodeName(record.level, record.index);
    if (bytes == nullptr) {
        findings_.Add("point block", name + " has its point block beyond the end of the file");
        return;
    }
    std::array<unsigned long long, 2> words{};
    std::memcpy(words.data(), bytes, sizeof words);
    if (words[0] != record.level)
        findings_.Add("point block",
                      name + " has a point block for level " + std::to_string(words[0]));
    if (words[1] != record.points)
        findings_.Add("point block", name + " has " + std::to_string(record.points) +
                                         " points, its point block " + std::to_string(words[1]));
}

void PointBlockVerifier::CheckPoints(const NodeRecord& record) {
    const unsigned long long recordSize = VpcPoint3D::SerializeDiskSize();
    unsigned long long outside = 0;
    unsigned long long firstOutside = 0;
    unsigned long long position = record.pointBlock + Layout::pointBlockHeaderSize;
    for (unsigned long long done = 0; done < record.points;) {
        const unsigned long long count = std::min(pointsAtATime, record.points - done);
        const char* bytes = file_.Bytes(position, count * recordSize);
        if (bytes == nullptr) {
            findings_.Add("point block", nodeName(record.level, record.index) +
                                             " has points beyond the end of the file");
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
        findings_.Add("point", std::to_string(outside) + " of " + std::to_string(record.points) +
                                   " points of " + nodeName(record.level, record.index) +
                                   " lie outside its box, the first is point " +
                                   std::to_string(firstOutside));
}

}  // namespace vpc
