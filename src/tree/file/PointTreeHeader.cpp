#include "tree/file/PointTreeHeader.h"

#include "core/util/FileBufferStream.h"
#include "tree/file/PointTreeLayout.h"

namespace vpc {

namespace Layout = PointTreeLayout;

wxString PointTreeHeader::Read(FileBufferStream& stream) {
    fileSize = stream.StreamSize();
    if (fileSize < Layout::firstNodeRecordPosition(Layout::wordSize, 0))
        return wxString::Format("is too short for a point tree file (%llu bytes)", fileSize);
    ReadFixedPart(stream);
    wxString fault = ReadSourceNames(stream);
    if (fault.empty()) fault = ReadNodeCounts(stream);
    if (fault.empty() && !stream.IsStreamGood()) fault = "cannot be read";
    return fault;
}

void PointTreeHeader::ReadFixedPart(FileBufferStream& stream) {
    version = stream.StreamReadAtUint64(Layout::versionPosition);
    treeType = static_cast<std::uint32_t>(stream.StreamReadAtUint64(Layout::treeTypePosition));
    minimumDistance = stream.StreamReadAtDouble(Layout::minimumDistancePosition);
    largestNodeCount = stream.StreamReadAtUint64(Layout::largestNodeCountPosition);
    flag = stream.StreamReadAtBool(Layout::flagPosition);
    maxRed = stream.StreamReadUint16();
    maxGreen = stream.StreamReadUint16();
    maxBlue = stream.StreamReadUint16();
    maxIntensity = stream.StreamReadDouble();
    for (double& value : furtherDoubles) value = stream.StreamReadDouble();
    hostValue = stream.StreamReadUint64();
    nodeRecordsWord = stream.StreamReadUint64();
    pointDataWord = stream.StreamReadUint64();
}

wxString PointTreeHeader::ReadSourceNames(FileBufferStream& stream) {
    sourceNames.clear();
    const unsigned long long count = stream.StreamReadAtUint64(Layout::sourceNamesPosition);
    sourceNameBytes = Layout::wordSize;
    unsigned long long left = fileSize - Layout::sourceNamesPosition - Layout::wordSize;
    if (count > left / Layout::wordSize)
        return wxString::Format("claims %llu source names, more than it has room for", count);
    for (unsigned long long i = 0; i < count; ++i) {
        if (left < Layout::wordSize) return "ends within its source names";
        const unsigned long long length = stream.StreamReadUint64();
        left -= Layout::wordSize;
        if (length > left / Layout::characterSize)
            return wxString::Format("claims a source name of %llu characters", length);
        sourceNames.push_back(stream.StreamReadString(length));
        if (!stream.IsStreamGood()) return "holds a source name that is too long to be read";
        left -= length * Layout::characterSize;
        sourceNameBytes += Layout::wordSize + length * Layout::characterSize;
    }
    return {};
}

wxString PointTreeHeader::ReadNodeCounts(FileBufferStream& stream) {
    nodeCounts.clear();
    if (fileSize < Layout::nodeCountsPosition(sourceNameBytes)) return "ends within its header";
    pointRecordSize = stream.StreamReadAtUint64(Layout::pointRecordSizePosition(sourceNameBytes));
    const unsigned long long claimed = stream.StreamReadUint64();
    unsigned long long left = fileSize - Layout::nodeCountsPosition(sourceNameBytes);
    if (claimed > left / Layout::wordSize)
        return wxString::Format("claims %llu levels, more than it has room for", claimed);
    left -= claimed * Layout::wordSize;
    nodeCounts.reserve(claimed);
    for (unsigned long long level = 0; level < claimed; ++level) {
        const unsigned long long nodes = stream.StreamReadUint64();
        const unsigned long long smallest = Layout::recordSize(level, {});
        if (nodes > left / smallest)
            return wxString::Format("claims %llu nodes in level %llu, more than it has room for",
                                    nodes, level);
        left -= nodes * smallest;
        nodeCounts.push_back(nodes);
    }
    levels = claimed;
    firstNodeRecord = Layout::firstNodeRecordPosition(sourceNameBytes, levels);
    return {};
}

}  // namespace vpc
