#include "tree/file/PointTreeHeader.h"

#include <utility>

#include <wx/translation.h>

#include "core/util/FileBufferStream.h"
#include "core/util/IoError.h"
#include "tree/file/PointTreeLayout.h"
#include "tree/file/PointTreeReader.h"

namespace vpc {

namespace Layout = PointTreeLayout;

namespace {

/// Reads a header member by member.
class HeaderReader {
public:
    HeaderReader(FileBufferStream& stream, const PointTreeReader& file)
        : stream_(stream), file_(file) {}

    PointTreeHeader Read() {
        header_.fileSize = file_.Size();
        if (header_.fileSize < Layout::firstNodeRecordPosition(Layout::wordSize, 0))
            Refuse(wxString::Format(_("is too short for a point tree file (%llu bytes)"),
                                    header_.fileSize));
        ReadFixedPart();
        ReadSourceNames();
        ReadNodeCounts();
        if (!stream_.IsStreamGood()) file_.FailReading();
        return std::move(header_);
    }

private:
    [[noreturn]] void Refuse(const wxString& problem) const {
        throw IoError(file_.FileName(), problem);
    }

    void ReadFixedPart() {
        header_.version = stream_.StreamReadAtUint64(Layout::versionPosition);
        header_.treeType =
            static_cast<std::uint32_t>(stream_.StreamReadAtUint64(Layout::treeTypePosition));
        header_.minimumDistance = stream_.StreamReadAtDouble(Layout::minimumDistancePosition);
        header_.largestNodeCount = stream_.StreamReadAtUint64(Layout::largestNodeCountPosition);
        header_.flag = stream_.StreamReadAtBool(Layout::flagPosition);
        header_.maxRed = stream_.StreamReadUint16();
        header_.maxGreen = stream_.StreamReadUint16();
        header_.maxBlue = stream_.StreamReadUint16();
        header_.maxIntensity = stream_.StreamReadDouble();
        for (double& value : header_.furtherDoubles) value = stream_.StreamReadDouble();
        header_.hostValue = stream_.StreamReadUint64();
        header_.nodeRecordsWord = stream_.StreamReadUint64();
        header_.pointDataWord = stream_.StreamReadUint64();
    }

    void ReadSourceNames() {
        const unsigned long long count = stream_.StreamReadAtUint64(Layout::sourceNamesPosition);
        unsigned long long left = header_.fileSize - Layout::sourceNamesPosition - Layout::wordSize;
        if (count > left / Layout::wordSize)
            Refuse(
                wxString::Format(_("claims %llu source names, more than it has room for"), count));
        for (unsigned long long i = 0; i < count; ++i) ReadSourceName(left);
        header_.sourceNameBytes = header_.fileSize - Layout::sourceNamesPosition - left;
    }

    /// \param left bytes from the stream's position to the end of the file
    void ReadSourceName(unsigned long long& left) {
        if (left < Layout::wordSize) Refuse(_("ends within its source names"));
        const unsigned long long length = stream_.StreamReadUint64();
        left -= Layout::wordSize;
        if (length > left / Layout::characterSize)
            Refuse(wxString::Format(_("claims a source name of %llu characters"), length));
        header_.sourceNames.push_back(stream_.StreamReadString(length));
        if (stream_.HasSystemError()) file_.FailReading();
        if (!stream_.IsStreamGood()) Refuse(_("holds a source name that is too long to be read"));
        left -= length * Layout::characterSize;
    }

    void ReadNodeCounts() {
        const unsigned long long names = header_.sourceNameBytes;
        if (header_.fileSize < Layout::nodeCountsPosition(names))
            Refuse(_("ends within its header"));
        header_.pointRecordSize =
            stream_.StreamReadAtUint64(Layout::pointRecordSizePosition(names));
        header_.levels = stream_.StreamReadUint64();
        unsigned long long left = header_.fileSize - Layout::nodeCountsPosition(names);
        if (header_.levels > left / Layout::wordSize)
            Refuse(wxString::Format(_("claims %llu levels, more than it has room for"),
                                    header_.levels));
        left -= header_.levels * Layout::wordSize;
        header_.nodeCounts.reserve(header_.levels);
        for (unsigned long long level = 0; level < header_.levels; ++level)
            ReadNodeCount(level, left);
        header_.firstNodeRecord = Layout::firstNodeRecordPosition(names, header_.levels);
    }

    /// \param left bytes of the file that the levels above leave for further node records
    void ReadNodeCount(unsigned long long level, unsigned long long& left) {
        const unsigned long long nodes = stream_.StreamReadUint64();
        const unsigned long long smallest = Layout::recordSize(level, {});
        if (nodes > left / smallest)
            Refuse(wxString::Format(_("claims %llu nodes in level %llu, more than it has room for"),
                                    nodes, level));
        left -= nodes * smallest;
        header_.nodeCounts.push_back(nodes);
    }

    FileBufferStream& stream_;
    const PointTreeReader& file_;
    PointTreeHeader header_;
};

}  // namespace

PointTreeHeader PointTreeHeader::Read(FileBufferStream& stream, const PointTreeReader& file) {
    return HeaderReader(stream, file).Read();
}

}  // namespace vpc
