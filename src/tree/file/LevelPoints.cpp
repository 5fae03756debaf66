#include "tree/file/LevelPoints.h"

#include <algorithm>

#include "core/geometry/VpcPoint3D.h"
#include "tree/file/NodeRecordReader.h"
#include "tree/file/PointTreeReader.h"

namespace vpc {

namespace {

/// About as many as the window holds at once.
constexpr unsigned long long recordsAtOnce = (1ULL << 20) / VpcPoint3D::recordSize;

/// Calls `take` with the record of every node of the level that has points.
template <class Take>
void forEachNode(PointTreeReader& file, unsigned long long level, const Take& take) {
    NodeRecordReader records(file);
    NodeRecord record;
    while (records.Next(record) && record.level <= level)
        if (record.level == level && record.points > 0) take(record);
}

}  // namespace

unsigned long long LevelPoints::Count(PointTreeReader& file, unsigned long long level) {
    unsigned long long points = 0;
    forEachNode(file, level, [&](const NodeRecord& record) { points += record.points; });
    return points;
}

void LevelPoints::ForEach(PointTreeReader& file, unsigned long long level, const Visit& visit) {
    file.RequirePointRecords();
    FileWindow blocks(file);
    unsigned long long room = file.RoomForPoints();
    forEachNode(file, level, [&](const NodeRecord& record) {
        file.RequirePoints(record, room);
        for (unsigned long long first = 0; first < record.points; first += recordsAtOnce) {
            const unsigned long long bytes =
                std::min(recordsAtOnce, record.points - first) * VpcPoint3D::recordSize;
            visit({blocks.Bytes(record.pointList + first * VpcPoint3D::recordSize, bytes), bytes});
        }
    });
}

}  // namespace vpc
