#include "tree/file/LevelTotals.h"

#include <algorithm>

#include "tree/file/NodeRecordReader.h"
#include "tree/file/PointTreeReader.h"

namespace vpc {

std::vector<LevelTotals> LevelTotals::Count(PointTreeReader& file,
                                            const std::function<void(const NodeRecord&)>& visit) {
    std::vector<LevelTotals> levels(file.Header().levels);
    NodeRecordReader reader(file);
    NodeRecord record;
    while (reader.Next(record)) {
        LevelTotals& level = levels[record.level];
        ++level.nodes;
        level.points += record.points;
        level.largestNode = std::max(level.largestNode, record.points);
        level.recordBytes += record.size;
        if (visit) visit(record);
    }
    return levels;
}

}  // namespace vpc
