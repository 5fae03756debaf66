#pragma once

#include <initializer_list>

/// The byte positions of a point tree file, in the one place that its writer and its readers share.
///
/// header | node records, level by level | point blocks, in the order of the records
///
/// All values are little-endian and nothing is padded: unsigned 64-bit and double take 8 bytes,
/// bool 1, unsigned 16-bit 2; a string is an 8-byte character count and 4 bytes a character.
namespace PointTreeLayout {

using Position = unsigned long long;

/// The only version that is written and accepted.
inline constexpr unsigned long long version = 9;
/// The extension of the file's name. Readers put it in place of any other one.
inline constexpr const char* extension = "vpt";
/// Size of a count, a position or a coordinate.
inline constexpr Position wordSize = 8;
/// Size of three words.
inline constexpr Position tripletSize = 3 * wordSize;
/// Size of one character of a string.
inline constexpr Position characterSize = 4;

// --- File header ---------------------------------------------------------------------------------

inline constexpr Position versionPosition = 0;
inline constexpr Position treeTypePosition = 8;
inline constexpr Position minimumDistancePosition = 16;
inline constexpr Position largestNodeCountPosition = 24;
inline constexpr Position flagPosition = 32;
inline constexpr Position maximumColoursPosition = 33;
inline constexpr Position maximumIntensityPosition = 39;
inline constexpr Position furtherDoublesPosition = 47;
inline constexpr unsigned furtherDoubles = 6;
inline constexpr Position hostValuePosition = 95;
/// Where the position of the first node record stands.
inline constexpr Position nodeRecordsWordPosition = 103;
/// Where the position of the first point block stands.
inline constexpr Position pointDataWordPosition = 111;
/// Count of source names, then the names.
inline constexpr Position sourceNamesPosition = 119;

/// Position of the point record size, after a source-name block of `sourceNameBytes` (its count
/// included); the number of levels and the node counts of the levels follow it.
constexpr Position pointRecordSizePosition(Position sourceNameBytes) {
    return sourceNamesPosition + sourceNameBytes;
}
constexpr Position levelCountPosition(Position sourceNameBytes) {
    return pointRecordSizePosition(sourceNameBytes) + wordSize;
}
constexpr Position nodeCountsPosition(Position sourceNameBytes) {
    return levelCountPosition(sourceNameBytes) + wordSize;
}
constexpr Position firstNodeRecordPosition(Position sourceNameBytes, unsigned long long levels) {
    return nodeCountsPosition(sourceNameBytes) + wordSize * levels;
}

// --- Node records: positions relative to the start of a record, for a node at `level` ------------

inline constexpr Position levelWordOffset = 0;
inline constexpr Position nodeDistanceOffset = 8;
inline constexpr Position indexPathOffset = 16;

/// Bytes of one path: a triplet for every level from the root down to the node.
constexpr Position pathSize(unsigned long long level) {
    return tripletSize * (level + 1);
}
constexpr Position gridPathOffset(unsigned long long level) {
    return indexPathOffset + pathSize(level);
}
constexpr Position boxMinimumOffset(unsigned long long level) {
    return gridPathOffset(level) + pathSize(level);
}
constexpr Position boxMaximumOffset(unsigned long long level) {
    return boxMinimumOffset(level) + tripletSize;
}
constexpr Position pointCountOffset(unsigned long long level) {
    return boxMaximumOffset(level) + tripletSize;
}
constexpr Position childrenXOffset(unsigned long long level) {
    return pointCountOffset(level) + wordSize;
}
constexpr Position childrenYOffset(unsigned long long level) {
    return childrenXOffset(level) + wordSize;
}
constexpr Position childrenZOffset(unsigned long long level) {
    return childrenYOffset(level) + wordSize;
}
constexpr Position cellWidthsOffset(unsigned long long level) {
    return childrenZOffset(level) + wordSize;
}

/// The children grid of a node, which the later positions of its record depend on.
struct ChildGrid {
    unsigned long long x = 0;
    unsigned long long y = 0;
    unsigned long long z = 0;
    constexpr unsigned long long widths() const { return x + y + z; }
    constexpr unsigned long long cells() const { return x * y * z; }
};

constexpr Position recordPositionOffset(unsigned long long level, const ChildGrid& grid) {
    return cellWidthsOffset(level) + wordSize * grid.widths();
}
constexpr Position pointBlockOffset(unsigned long long level, const ChildGrid& grid) {
    return recordPositionOffset(level, grid) + wordSize;
}
constexpr Position pointListOffset(unsigned long long level, const ChildGrid& grid) {
    return pointBlockOffset(level, grid) + wordSize;
}
constexpr Position parentRecordOffset(unsigned long long level, const ChildGrid& grid) {
    return pointListOffset(level, grid) + wordSize;
}
constexpr Position parentBlockOffset(unsigned long long level, const ChildGrid& grid) {
    return parentRecordOffset(level, grid) + wordSize;
}
constexpr Position childEntriesOffset(unsigned long long level, const ChildGrid& grid) {
    return parentBlockOffset(level, grid) + wordSize;
}
/// Size of a child's entry: the position of its record and the position of its point block.
inline constexpr Position childEntrySize = 2 * wordSize;

constexpr Position recordSize(unsigned long long level, const ChildGrid& grid) {
    return childEntriesOffset(level, grid) + childEntrySize * grid.cells();
}

/// Whether a record with this children grid ends within `available` bytes from its start. This
/// cannot overflow, so that a grid from a damaged file can be checked against the file's length
/// before it is computed with. `level` comes from a list of counts that fitted in the file.
constexpr bool recordFits(unsigned long long level, const ChildGrid& grid, Position available) {
    const Position fixed = recordSize(level, {});
    if (available < fixed) return false;
    Position left = available - fixed;
    for (const Position count : {grid.x, grid.y, grid.z}) {
        if (count > left / wordSize) return false;
        left -= count * wordSize;
    }
    if (grid.x == 0 || grid.y == 0 || grid.z == 0) return true;
    return grid.x <= left / childEntrySize / grid.y / grid.z;
}

/// Position of member `member` (0 to 16, as a querier counts them) in a record.
constexpr Position memberOffset(int member, unsigned long long level, const ChildGrid& grid) {
    switch (member) {
        case 0:
            return levelWordOffset;
        case 1:
            return nodeDistanceOffset;
        case 2:
            return indexPathOffset;
        case 3:
            return gridPathOffset(level);
        case 4:
            return boxMinimumOffset(level);
        case 5:
            return boxMaximumOffset(level);
        case 6:
            return pointCountOffset(level);
        case 7:
            return childrenXOffset(level);
        case 8:
            return childrenYOffset(level);
        case 9:
            return childrenZOffset(level);
        case 10:
            return cellWidthsOffset(level);
        case 11:
            return recordPositionOffset(level, grid);
        case 12:
            return pointBlockOffset(level, grid);
        case 13:
            return pointListOffset(level, grid);
        case 14:
            return parentRecordOffset(level, grid);
        case 15:
            return parentBlockOffset(level, grid);
        default:
            return member < 0 ? levelWordOffset : childEntriesOffset(level, grid);
    }
}

// --- Point blocks --------------------------------------------------------------------------------

/// A block begins with the node's level and its point count; the point records follow.
inline constexpr Position pointBlockHeaderSize = 2 * wordSize;

static_assert(gridPathOffset(2) == 40 + 24 * 2 && boxMinimumOffset(2) == 64 + 48 * 2);
static_assert(pointCountOffset(3) == 112 + 48 * 3 && cellWidthsOffset(3) == 144 + 48 * 3);
static_assert(recordSize(1, {2, 3, 4}) == 184 + 48 + 8 * 9 + 16 * 24);

}  // namespace PointTreeLayout
