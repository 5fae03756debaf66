#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include <wx/string.h>

class FileBufferStream;

namespace vpc {

class PointTreeReader;

/// The fixed header of a point tree file and the node counts that follow it, as they stand in the
/// file: values are not judged, except that everything that they count must fit in the file.
struct PointTreeHeader {
    unsigned long long version = 0;
    /// 0 for the octree, 1 for the kd-tree; a VpcTreeType unless the file is damaged.
    std::uint32_t treeType = 0;
    /// Point spacing of the deepest level.
    double minimumDistance = 0.0;
    /// Points of the fullest node of the deepest level.
    unsigned long long largestNodeCount = 0;
    bool flag = false;
    std::uint16_t maxRed = 0;
    std::uint16_t maxGreen = 0;
    std::uint16_t maxBlue = 0;
    double maxIntensity = 0.0;
    /// The host's own value; `vpc` keeps the unit code there.
    unsigned long long hostValue = 0;
    /// Where the node records and the point blocks begin, as the file says.
    unsigned long long nodeRecordsWord = 0;
    unsigned long long pointDataWord = 0;
    std::array<double, 6> furtherDoubles{};
    std::vector<wxString> sourceNames;
    /// Bytes of the source-name block, its count included.
    unsigned long long sourceNameBytes = 0;
    unsigned long long levels = 0;
    unsigned long long pointRecordSize = 0;
    /// Where the first node record stands, added up from the sizes before it.
    unsigned long long firstNodeRecord = 0;
    /// Node records of each level, level 0 first.
    std::vector<unsigned long long> nodeCounts;
    /// The length of the file.
    unsigned long long fileSize = 0;

    /// Reads the header of `file`, which `stream` has open. Every count is checked against the
    /// file's length before it is used, so a damaged file costs neither memory nor time. Throws
    /// IoError where the header does not fit in the file or cannot be read.
    static PointTreeHeader Read(FileBufferStream& stream, const PointTreeReader& file);
};

}  // namespace vpc
