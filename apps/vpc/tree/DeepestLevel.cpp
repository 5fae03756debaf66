#include "vpc/tree/DeepestLevel.h"

namespace vpc {

DeepestLevel::DeepestLevel(PointTreeReader& file)
    : file_(file), window_(file), room_(file.RoomForPoints()) {
    file.RequirePointRecords();
}

void DeepestLevel::Add(const NodeRecord& record) {
    if (record.level + 1 != file_.Header().levels || record.points == 0) return;
    file_.RequirePoints(record, room_);
    points_ += record.points;
    nodes_.push_back({record.boxMinimum, record.boxMaximum, record.points, record.pointList});
}

}  // namespace vpc
