#include "vpc/LevelTotals.h"

#include <algorithm>

#include "core/util/FileTools.h"
#include "tree/file/NodeRecordReader.h"
#include "vpc/common/Command.h"

namespace vpc {

std::vector<LevelTotals> LevelTotals::Count(const wxString& file, const PointTreeHeader& header,
                                            const std::function<void(const NodeRecord&)>& visit) {
    std::vector<LevelTotals> levels(header.levels);
    NodeRecordReader reader(file, header);
    NodeRecord record;
    while (reader.Next(record)) {
        LevelTotals& level = levels[record.level];
        ++level.nodes;
        level.points += record.points;
        level.largestNode = std::max(level.largestNode, record.points);
        level.recordBytes += record.size;
        if (visit) visit(record);
    }
    if (reader.Failed())
        throw CommandError("'" + FileTools::ToNativePath(file) +
                           "' is damaged or cannot be read: a node record is missing; see vpc "
                           "verify");
    return levels;
}

}  // namespace vpc
