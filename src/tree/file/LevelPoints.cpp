#include "tree/file/LevelPoints.h"

#include "tree/file/NodeRecordReader.h"
#include "tree/file/PointTreeReader.h"

namespace vpc {

namespace {

void readPoints(FileWindow& blocks, const NodeRecord& record, std::vector<VpcPoint3D>& points) {
    const char* const bytes =
        blocks.Bytes(record.pointList, record.points * VpcPoint3D::recordSize);
    for (unsigned long long i = 0; i < record.points; ++i)
        points.emplace_back().FromRecord(bytes + i * VpcPoint3D::recordSize);
}

}  // namespace

std::vector<VpcPoint3D> LevelPoints::Read(PointTreeReader& file, unsigned long long level,
                                          const std::function<void()>& beforeNode) {
    file.RequirePointRecords();
    NodeRecordReader records(file);
    FileWindow blocks(file);
    std::vector<VpcPoint3D> points;
    NodeRecord record;
    unsigned long long room = file.RoomForPoints();
    while (records.Next(record) && record.level <= level) {
        if (record.level < level || record.points == 0) continue;
        if (beforeNode) beforeNode();
        file.RequirePoints(record, room);
        readPoints(blocks, record, points);
    }
    return points;
}

}  // namespace vpc
