#pragma once

#include <array>
#include <memory>

#include <wx/string.h>

#include "platform/OdGePoint3d.h"
#include "platform/OdString.h"
#include "tree/disk/offsetHeaderMemberType.h"
#include "tree/file/PointTreeHeader.h"
#include "tree/file/PointTreeLayout.h"

namespace vpc {
class PointTreeReader;
}

/// Answers single questions about a point tree file without loading the tree.
///
/// Nothing is kept but the header. Every question about a node walks the node records from the
/// first one, because their length varies: cheap for the root, linear in the number of records
/// for the last node. Use vpc::NodeRecordReader to visit them all.
///
/// The file is not trusted: where sizes in it go beyond its end, it counts as not open, or the
/// question is answered with 0 or false. One querier, one thread: it moves the file's position.
class VpcDiskTreeQuerier {
public:
    /// Opens the file of that name with the extension "vpt" in place of its own, and reads its
    /// header.
    explicit VpcDiskTreeQuerier(const OdString& path);
    ~VpcDiskTreeQuerier();
    VpcDiskTreeQuerier(const VpcDiskTreeQuerier&) = delete;
    VpcDiskTreeQuerier& operator=(const VpcDiskTreeQuerier&) = delete;

    /// The version of the file of that name with the extension "vpt"; 0 if there is none.
    static unsigned long long vptVersion(const OdString& path);

    /// The version that the file claims; 0 where it cannot be read.
    unsigned long long version() const;
    /// Whether the file is open and its header holds together.
    bool isOpen() const { return fault_.empty(); }
    /// Why not, in words that may follow the file's name; empty when it is open.
    const wxString& fault() const { return fault_; }
    /// The file's name, with the extension "vpt".
    const wxString& fileName() const { return fileName_; }
    /// All 0 when the file is not open.
    const vpc::PointTreeHeader& header() const { return header_; }

    /// Position of the record of node `index` of `level`. `index` is not checked against the
    /// level's count: a greater one counts on into the records that follow. 0 where the walk would
    /// leave the file.
    unsigned long long getOffsetHeaderNode(unsigned long long level, unsigned long long index);
    /// Position just after the last node record; 0 where the records do not fit in the file.
    unsigned long long getOffsetPointData();
    /// Position of a member of a node's record; 0 where the record does not fit in the file. Values
    /// below 0 give the start of the record, values above 16 the last member.
    unsigned long long getOffsetHeaderMember(unsigned long long level, unsigned long long index,
                                             offsetHeaderMemberType member);
    /// Position of the member that holds the position of the node's point block.
    unsigned long long getOffsetPointBlock(unsigned long long level, unsigned long long index);
    /// Position of the member that holds the position of the node's point list.
    unsigned long long getOffsetPointList(unsigned long long level, unsigned long long index);
    /// The node's point count as its record says; 0 where the record does not fit in the file.
    unsigned long long nodeNrPoints(unsigned long long level, unsigned long long index);
    /// The node's box. False, and nothing assigned, when there is no such record to be read.
    bool nodeExtents(unsigned long long level, unsigned long long index, OdGePoint3d& min,
                     OdGePoint3d& max);
    bool rootNodeExtents(OdGePoint3d& min, OdGePoint3d& max);

private:
    bool ReadGrid(unsigned long long record, unsigned long long level,
                  PointTreeLayout::ChildGrid& grid);
    /// Moves `record` over `count` records of `level`; false where they leave the file.
    bool SkipRecords(unsigned long long& record, unsigned long long level,
                     unsigned long long count);

    /// Reads `values` at `position`, where they are known to lie within the file.
    template <class T, std::size_t n>
    bool ReadAt(unsigned long long position, std::array<T, n>& values);

    wxString fileName_;
    std::unique_ptr<vpc::PointTreeReader> file_;
    wxString fault_;
    vpc::PointTreeHeader header_;
};
