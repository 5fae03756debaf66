// Asks a querier of point tree files everything about the input, and compares its answers with
// those of the reader that visits all records. Verifies the input, and loads it.

#include <algorithm>
#include <array>
#include <bit>
#include <limits>

#include "InputFile.h"
#include "Require.h"
#include "core/util/StringTools.h"
#include "tree/disk/VpcDiskTree.h"
#include "tree/disk/VpcDiskTreeQuerier.h"
#include "tree/file/NodeRecordReader.h"
#include "tree/file/PointTreeReader.h"
#include "tree/verify/TreeVerifier.h"

namespace {

using vpc::fuzz::require;

constexpr unsigned long long farthest = std::numeric_limits<unsigned long long>::max();
/// No more nodes, since every question walks through the records from the first one on.
constexpr unsigned long long mostNodesAsked = 20;

/// Compares bits, since damaged files hold coordinates that are no numbers.
bool isSame(const OdGePoint3d& point, const std::array<double, 3>& values) {
    using Bits = std::array<std::uint64_t, 3>;
    return std::bit_cast<Bits>(std::array{point.x, point.y, point.z}) ==
           std::bit_cast<Bits>(values);
}

/// Asks about one node, which may not exist.
void askAll(VpcDiskTreeQuerier& querier, unsigned long long level, unsigned long long index) {
    const unsigned long long size = querier.header().fileSize;
    const unsigned long long record = querier.getOffsetHeaderNode(level, index);
    require(record <= size, "a record lies in the file");
    constexpr int lastMember = OffsetHeaderChildEntries;
    unsigned long long before = 0;
    for (int member = -1; member <= lastMember + 1; ++member) {
        const unsigned long long position = querier.getOffsetHeaderMember(
            level, index, static_cast<offsetHeaderMemberType>(member));
        require(position <= size && position >= before, "members follow one another in the file");
        before = position;
    }
    querier.getOffsetPointBlock(level, index);
    querier.getOffsetPointList(level, index);
    querier.nodeNrPoints(level, index);
    OdGePoint3d low, high;
    querier.nodeExtents(level, index, low, high);
}

void askAboutLevels(VpcDiskTreeQuerier& querier) {
    const unsigned long long levels = querier.header().levels;
    constexpr unsigned long long mostLevels = 4;
    for (unsigned long long level = 0; level < std::min(levels, mostLevels); ++level) {
        const unsigned long long nodes = querier.header().nodeCounts[level];
        for (const unsigned long long index : {nodes - 1, nodes, farthest})
            askAll(querier, level, index);
    }
    for (const unsigned long long level : {levels - 1, levels, farthest}) askAll(querier, level, 0);
}

/// Holds the querier's answers against the records; gives where these end.
unsigned long long compareWithRecords(VpcDiskTreeQuerier& querier, vpc::PointTreeReader& file) {
    vpc::NodeRecordReader reader(file);
    vpc::NodeRecord record;
    unsigned long long asked = 0;
    while (reader.Next(record)) {
        if (++asked > mostNodesAsked) continue;
        askAll(querier, record.level, record.index);
        require(querier.getOffsetHeaderNode(record.level, record.index) == record.position,
                "both find the same record");
        require(querier.nodeNrPoints(record.level, record.index) == record.points,
                "both find the same count");
        OdGePoint3d low, high;
        require(querier.nodeExtents(record.level, record.index, low, high) &&
                    isSame(low, record.boxMinimum) && isSame(high, record.boxMaximum),
                "both find the same box");
    }
    return reader.Position();
}

void compareWithReader(VpcDiskTreeQuerier& querier, vpc::PointTreeReader& file) {
    unsigned long long end = 0;
    try {
        end = compareWithRecords(querier, file);
    } catch (const vpc::IoError&) {
        // They end nowhere.
    }
    require(querier.getOffsetPointData() == end, "both find the same end");
}

/// What the verifier passes, the tree loads.
void compareVerdicts(const wxString& name) {
    vpc::PointTreeReader file(name);
    bool isSound = true;
    vpc::TreeVerifier(file, [&](const vpc::Finding&) { isSound = false; }).Run();
    VpcDiskTree tree;
    require(tree.CreateFromFile(name) || !isSound, "a file without faults can be loaded");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const vpc::fuzz::InputFile file(data, size, "vpt");
    const OdString name = StringTools::ToOdString(file.name());
    VpcDiskTreeQuerier::vptVersion(name);
    VpcDiskTreeQuerier querier(name);
    require(querier.isOpen() == querier.fault().empty(), "a file that is not open has a fault");
    OdGePoint3d low, high;
    querier.rootNodeExtents(low, high);
    askAboutLevels(querier);
    vpc::PointTreeReader reader(file.name());
    if (querier.isOpen()) compareWithReader(querier, reader);
    compareVerdicts(file.name());
    return 0;
}
