#include "vpc/LevelPoints.h"

#include "core/util/FileTools.h"
#include "tree/file/NodeRecordReader.h"
#include "vpc/common/Command.h"
#include "vpc/common/Interrupt.h"

namespace vpc {

namespace {

[[noreturn]] void refuseDamaged(const wxString& file) {
    throw CommandError("'" + FileTools::ToNativePath(file) +
                       "' is damaged or cannot be read: the points that its node records claim are "
                       "missing; see vpc verify");
}

}  // namespace

std::vector<VpcPoint3D> LevelPoints::Read(const wxString& file, const PointTreeHeader& header,
                                          unsigned long long level) {
    NodeRecordReader records(file, header);
    FileWindow blocks(file);
    std::vector<VpcPoint3D> points;
    NodeRecord record;
    while (records.Next(record) && record.level <= level) {
        if (record.level < level || record.points == 0) continue;
        Interrupt::Check();
        if (record.points > header.fileSize / VpcPoint3D::recordSize) refuseDamaged(file);
        const char* bytes = blocks.Bytes(record.pointList, record.points * VpcPoint3D::recordSize);
        if (bytes == nullptr) refuseDamaged(file);
        for (unsigned long long i = 0; i < record.points; ++i)
            points.emplace_back().FromRecord(bytes + i * VpcPoint3D::recordSize);
    }
    if (records.Failed()) refuseDamaged(file);
    return points;
}

}  // namespace vpc
