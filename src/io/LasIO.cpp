#include "io/LasIO.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <utility>

#include <wx/translation.h>

#include "core/util/IoError.h"
#include "core/util/ValueAt.h"

namespace {

using vpc::valueAt;

/// How much of the file is read for its header.
constexpr unsigned long long headerBlockBytes = 100000;
/// Bytes of a header up to the bounds, and up to the 64-bit count.
constexpr unsigned long long legacyHeaderBytes = 227;
constexpr unsigned long long header13Bytes = 235;
constexpr unsigned long long header14Bytes = 255;
/// Bytes of the header of an extended variable-length record, and where it holds the length of
/// what follows it.
constexpr unsigned long long recordHeaderBytes = 60;
constexpr unsigned long long recordLengthPosition = 20;
/// Bytes of the coordinates and the intensity, with which every record begins.
constexpr unsigned long long plainRecordBytes = 14;
constexpr int colourBytes = vpc::ScanRecords::colourSize;
/// Enough bytes for all fields that are read from a record.
constexpr std::size_t mostRecordBytes = 36;
constexpr int highestFormat = 10;

/// Text of a fixed width, in the C library's encoding.
wxString textAt(const char* bytes, std::size_t width) {
    return {bytes, wxConvLibc, strnlen(bytes, width)};
}

FileParentIO::Corner cornerAt(const char* bytes) {
    return {valueAt<double>(bytes), valueAt<double>(bytes + 8), valueAt<double>(bytes + 16)};
}

int colourOffsetOf(int format) {
    switch (format) {
        case 2:
            return 20;
        case 3:
        case 5:
            return 28;
        case 7:
        case 8:
        case 10:
            return 30;
        default:
            return 0;
    }
}

/// Of the first `bytes` of a record, those that whole fields take.
unsigned long long wholeFields(unsigned long long bytes, int colourOffset) {
    unsigned long long whole = 0;
    const auto count = [&](unsigned long long end) {
        if (end <= bytes) whole = std::max(whole, end);
    };
    for (const unsigned long long end : {4ULL, 8ULL, 12ULL, plainRecordBytes}) count(end);
    if (colourOffset == 0) return whole;
    for (const unsigned long long channel : {2ULL, 4ULL, 6ULL})
        count(static_cast<unsigned long long>(colourOffset) + channel);
    return whole;
}

/// The fields of a record that are read.
struct Record {
    double x, y, z;
    std::uint16_t red, green, blue;
    /// Read as signed, so that 32768 and above are negative: the rest of the system expects it.
    std::int16_t intensity;
};

template <bool hasColour>
Record decode(const char* bytes, const FileParentIO::Corner& scale,
              const FileParentIO::Corner& offset, int colourOffset) {
    Record record;
    record.x = valueAt<std::int32_t>(bytes) * scale.x + offset.x;
    record.y = valueAt<std::int32_t>(bytes + 4) * scale.y + offset.y;
    record.z = valueAt<std::int32_t>(bytes + 8) * scale.z + offset.z;
    record.intensity = valueAt<std::int16_t>(bytes + 12);
    if (hasColour) {
        record.red = valueAt<std::uint16_t>(bytes + colourOffset);
        record.green = valueAt<std::uint16_t>(bytes + colourOffset + 2);
        record.blue = valueAt<std::uint16_t>(bytes + colourOffset + 4);
    } else {
        record.red = record.green = record.blue = static_cast<std::uint16_t>(record.intensity);
    }
    return record;
}

}  // namespace

bool LasIO::Fail(const wxString& text) {
    errorMessage = text;
    return false;
}

bool LasIO::readHeader(wxString path, bool closeAfterHeader) {
    stream.StreamClose();
    const bool valid = ReadHeaderBlock(path) && CheckVersion() && CheckPointFormat();
    if (!valid || closeAfterHeader) stream.StreamClose();
    return valid;
}

bool LasIO::ReadHeaderBlock(const wxString& path) {
    if (!stream.StreamOpen(path, FileModeRead)) {
        openError = stream.SystemError();
        return Fail(vpc::IoError(path, wxGetTranslation("cannot be opened"), openError).Message());
    }
    stream.ReadFileBlock2Buffer(0, headerBlockBytes);
    if (stream.HasSystemError())
        return Fail(
            vpc::IoError(path, wxGetTranslation("cannot be read"), stream.SystemError()).Message());
    stream.StreamClearState();  // most files are shorter than the block, or may be
    if (stream.LastBlockSize() < 4 || std::memcmp(stream.bufferStart, "LASF", 4) != 0)
        return Fail(wxGetTranslation("\n input file is not a las file!"));
    return true;
}

bool LasIO::CheckVersion() {
    const char* const header = stream.bufferStart;
    const unsigned long long size = stream.LastBlockSize();
    versionMajor = size > 24 ? valueAt<std::uint8_t>(header + 24) : 0;
    versionMinor = size > 25 ? valueAt<std::uint8_t>(header + 25) : 0;
    if (size > 24 && versionMajor != 1)
        return Fail(wxGetTranslation("ERROR: invalid las major version number ") +
                    wxString::Format("%d", versionMajor));
    if (versionMinor >= 5)
        return Fail(wxGetTranslation("ERROR: invalid las minor version number ") +
                    wxString::Format("%d", versionMinor));
    if (size < (versionMinor >= 4 ? header14Bytes : legacyHeaderBytes))
        return Fail(wxString::Format(
            wxGetTranslation("ERROR: las header is cut short, the file has only %llu bytes"),
            size));
    ReadHeaderFields();
    return true;
}

void LasIO::ReadHeaderFields() {
    const char* const header = stream.bufferStart;
    systemIdentifier = textAt(header + 26, 32);
    generatingSoftware = textAt(header + 58, 32);
    fileCreationDayOfYear = valueAt<std::uint16_t>(header + 90);
    fileCreationYear = valueAt<std::uint16_t>(header + 92);
    headerSize = valueAt<std::uint16_t>(header + 94);
    offsetToPointData = valueAt<std::uint32_t>(header + 96);
    numberOfVariableLengthRecords = valueAt<std::uint32_t>(header + 100);
    pointDataFormat = valueAt<std::uint8_t>(header + 104);
    pointDataRecordLength = valueAt<std::uint16_t>(header + 105);
    numberOfPoints = valueAt<std::uint32_t>(header + 107);
    scale = cornerAt(header + 131);
    offset = cornerAt(header + 155);
    headerMax = {valueAt<double>(header + 179), valueAt<double>(header + 195),
                 valueAt<double>(header + 211)};
    headerMin = {valueAt<double>(header + 187), valueAt<double>(header + 203),
                 valueAt<double>(header + 219)};
    if (versionMajor > 1 || versionMinor >= 4)
        numberOfPoints = valueAt<unsigned long long>(header + 247);
    const auto startAt = [&](unsigned long long version, unsigned long long position,
                             unsigned long long headerBytes) {
        const bool isThere = static_cast<unsigned long long>(versionMinor) >= version &&
                             headerSize >= headerBytes && stream.LastBlockSize() >= headerBytes;
        return isThere ? valueAt<unsigned long long>(header + position) : 0;
    };
    waveforms_ = {startAt(3, 227, header13Bytes), 1};
    extendedRecords_ = {startAt(4, 235, header14Bytes), 0};
    if (extendedRecords_.start != 0) extendedRecords_.count = valueAt<std::uint32_t>(header + 243);
}

bool LasIO::CheckPointFormat() {
    // Only this format's length is checked: short records of the others are read as they are.
    if (pointDataFormat == 7 && pointDataRecordLength <= 35)
        return Fail(wxString::Format(
            wxGetTranslation("\n => in las file, point data record format (%d) and record length "
                             "(%d) are conflicting: expected length is 36"),
            pointDataFormat, static_cast<int>(pointDataRecordLength)));
    // The statistics restart with every file.
    maxRed = maxGreen = maxBlue = 0;
    maxIntensity = 0;
    colorOffset = colourOffsetOf(pointDataFormat);
    if (pointDataFormat > highestFormat)
        return Fail(wxGetTranslation("ERROR: invalid point format ") +
                    wxString::Format("%d", pointDataFormat));
    return true;
}

VpcPoint3D* LasIO::initializeRead(wxString path) {
    BeginFile(path);
    if (!readHeader(path, false)) {
        stream.StreamClose();
        return nullptr;
    }
    opened = true;
    bytesPerBatch = pointDataRecordLength * batchCapacity;
    // A file that is smaller than one batch needs no more room than it has bytes.
    const unsigned long long fileBytes = stream.StreamSize();
    account_.claimedPoints = numberOfPoints;
    account_.unexplainedBytes = UnexplainedBytes(fileBytes);
    const unsigned long long pointBytes =
        fileBytes > offsetToPointData ? fileBytes - offsetToPointData : 0;
    blockBytes_ = std::min(bytesPerBatch, pointBytes);
    stream.CreateInternalBuffer(blockBytes_);
    grid = vpc::CoordinateGrid{{scale.x, scale.y, scale.z}, {offset.x, offset.y, offset.z}};
    numberOfBatches = BatchesOf(numberOfPoints);
    pointsRead = 0;
    pointsRemaining = numberOfPoints;
    batchIndex = 0;
    return pointBuffer;
}

/// The bytes behind the last record that are neither waveforms nor extended records.
unsigned long long LasIO::UnexplainedBytes(unsigned long long fileBytes) {
    unsigned long long pointBytes = 0, pointsEnd = 0;
    if (__builtin_mul_overflow(numberOfPoints, pointDataRecordLength, &pointBytes) ||
        __builtin_add_overflow(pointBytes, offsetToPointData, &pointsEnd))
        return 0;
    unsigned long long at = pointsEnd;
    std::array<Trailer, 2> trailers{waveforms_, extendedRecords_};
    if (trailers[0].start > trailers[1].start) std::swap(trailers[0], trailers[1]);
    unsigned long long unexplained = 0;
    for (const Trailer& trailer : trailers) {
        if (at >= fileBytes || trailer.start < pointsEnd) continue;
        // One of the two may hold the other.
        const unsigned long long end = EndOfTrailer(trailer, fileBytes);
        if (end <= at) continue;
        if (trailer.start > at) unexplained += trailer.start - at;
        at = end;
    }
    return fileBytes > at ? unexplained + fileBytes - at : unexplained;
}

/// Where the records that begin at a trailer's start end; 0 where there are none in the file.
unsigned long long LasIO::EndOfTrailer(const Trailer& trailer, unsigned long long fileBytes) {
    unsigned long long at = trailer.start;
    if (at >= fileBytes || trailer.count == 0) return 0;
    // A count for which there is no room cannot be true.
    if (trailer.count > (fileBytes - at) / recordHeaderBytes) return 0;
    for (unsigned long long i = 0; i < trailer.count && at < fileBytes; ++i) {
        const unsigned long long length = stream.StreamReadAtUint64(at + recordLengthPosition);
        stream.StreamClearState();  // a record may be cut short
        if (__builtin_add_overflow(at + recordHeaderBytes, length, &at)) return fileBytes;
    }
    return at;
}

unsigned long long LasIO::nextPointBatch() {
    const unsigned long long first = batchIndex == 0 ? 1 : 0;
    const unsigned long long n = BeginBatch();
    if (first < n) ReadPoints(first, n);
    return n;
}

std::optional<vpc::ScanRecords> LasIO::nextRecordBatch() {
    if (batchCapacity == 0 || !RecordsAreRegular()) return std::nullopt;
    const unsigned long long n = BeginBatch();
    SurveyRecords(0, n);
    return vpc::ScanRecords{stream.bufferStart,    n,
                            pointDataRecordLength, static_cast<unsigned>(colorOffset),
                            grid.value(),          pointBuffer[0]};
}

/// Reads the next block and counts its points, of which the file's first one is decoded; returns
/// how many there are.
unsigned long long LasIO::BeginBatch() {
    const unsigned long long recordsInBlock = ReadBlock();
    const unsigned long long expected = std::min(pointsRemaining, batchCapacity);
    const unsigned long long n = std::min(expected, recordsInBlock);
    if (batchIndex == 0 && batchCapacity != 0) {
        // The first record is read even if there is no point, and it never counts: pointsRead is
        // one less than the points delivered.
        ReadPoint(0, pointBuffer[0]);
        InitializeExtent(pointBuffer[0].x, pointBuffer[0].y, pointBuffer[0].z);
        if (n == 0) nonFinitePoints = 0;
    }
    const unsigned long long first = batchIndex == 0 ? std::min(n, 1ULL) : 0;
    if (pointDataRecordLength < NeededRecordLength()) account_.pointsCutShort += n;
    pointsRead += n - first;
    pointsRemaining -= n;
    ++batchIndex;
    if (n < expected) ReportMissingRecords(pointsRemaining);
    return n;
}

/// Reads the next block of the file; returns how many whole records it holds.
unsigned long long LasIO::ReadBlock() {
    stream.ReadFileBlock2Buffer(offsetToPointData + batchIndex * bytesPerBatch, blockBytes_);
    if (stream.HasSystemError()) FailReading(stream.SystemError());
    stream.StreamClearState();  // the last block is mostly a short one
    return pointDataRecordLength == 0 ? 0 : stream.LastBlockSize() / pointDataRecordLength;
}

void LasIO::ReportMissingRecords(unsigned long long missing) {
    missingRecords = missing;
    pointsRemaining = 0;
    errorMessage = Account().MissingRecordsText();
}

/// How long a record must be to hold all fields that are read.
unsigned long long LasIO::NeededRecordLength() const {
    return colorOffset == 0 ? plainRecordBytes
                            : static_cast<unsigned long long>(colorOffset + colourBytes);
}

/// True if even the largest raw values give coordinates that are in range.
bool LasIO::CoordinatesAreInReach() const {
    constexpr double largest = 2147483648.0;
    const auto reaches = [this](double raw) {
        return VpcNumMathTools::AreCoordinates(raw * scale.x + offset.x, raw * scale.y + offset.y,
                                               raw * scale.z + offset.z);
    };
    return reaches(largest) && reaches(-largest);
}

/// True if every field that is read lies within its record and gives a value that is in range.
bool LasIO::RecordsAreRegular() const {
    return pointDataRecordLength >= NeededRecordLength() && CoordinatesAreInReach();
}

/// Reads the whole records `first` to `last` - 1 of the block.
void LasIO::ReadPoints(unsigned long long first, unsigned long long last) {
    if (!RecordsAreRegular()) {
        for (unsigned long long i = first; i < last; ++i) ReadPoint(i, pointBuffer[i]);
        return;
    }
    SurveyRecords(first, last);
    colorOffset != 0 ? DecodePoints<true>(first, last) : DecodePoints<false>(first, last);
}

/// Stores the points of regular records, as ReadPoint does for one.
template <bool hasColour>
void LasIO::DecodePoints(unsigned long long first, unsigned long long last) {
    const Corner recordScale = scale;
    const Corner recordOffset = offset;
    const int source = scanIndex;
    const int colour = colorOffset;
    const std::size_t step = pointDataRecordLength;
    const char* bytes = stream.bufferStart + first * step;
    for (VpcPoint3D *p = pointBuffer + first, *end = pointBuffer + last; p != end; ++p) {
        const Record record = decode<hasColour>(bytes, recordScale, recordOffset, colour);
        bytes += step;
        p->SetValues(record.x, record.y, record.z, record.red, record.green, record.blue,
                     record.intensity, source, 1.0);
    }
}

void LasIO::SurveyRecords(unsigned long long first, unsigned long long last) {
    if (first == last) return;
    colorOffset != 0 ? SurveyRecordsOf<true>(first, last) : SurveyRecordsOf<false>(first, last);
}

/// Widens extent and maxima by regular records, and decodes none of them but those at the extremes:
/// a coordinate grows with its integer, or falls where the scale is negative. All is kept in local
/// variables, since every file is read twice so.
template <bool hasColour>
void LasIO::SurveyRecordsOf(unsigned long long first, unsigned long long last) {
    using Wholes = std::array<std::int32_t, 3>;
    using Channels = std::array<std::uint16_t, 3>;
    const std::size_t step = pointDataRecordLength;
    const int colour = colorOffset;
    const char* bytes = stream.bufferStart + first * step;
    auto low = valueAt<Wholes>(bytes);
    auto high = low;
    Channels channels{};
    int intensity = std::numeric_limits<std::int16_t>::min();
    std::uint16_t grey = 0;
    for (const char* const end = stream.bufferStart + last * step; bytes != end; bytes += step) {
        const auto record = valueAt<Wholes>(bytes);
        for (std::size_t axis = 0; axis < record.size(); ++axis) {
            low[axis] = std::min(low[axis], record[axis]);
            high[axis] = std::max(high[axis], record[axis]);
        }
        intensity =
            std::max<int>(intensity, valueAt<std::int16_t>(bytes + vpc::ScanRecords::intensityAt));
        if (hasColour) {
            const auto its = valueAt<Channels>(bytes + colour);
            for (std::size_t i = 0; i < its.size(); ++i)
                channels[i] = std::max(channels[i], its[i]);
        } else {
            grey = std::max(grey, valueAt<std::uint16_t>(bytes + vpc::ScanRecords::intensityAt));
        }
    }
    for (const Wholes& corner : {low, high})
        UpdateExtent(corner[0] * scale.x + offset.x, corner[1] * scale.y + offset.y,
                     corner[2] * scale.z + offset.z);
    if (!hasColour) channels = {grey, grey, grey};
    UpdateColorIntensityRanges(channels[0], channels[1], channels[2], intensity);
}

void LasIO::ReadPoint(unsigned long long indexInBatch, VpcPoint3D& point) {
    // A record that ends early is copied and filled up with zeros.
    std::array<char, mostRecordBytes> bytes{};
    const unsigned long long start = indexInBatch * pointDataRecordLength;
    const unsigned long long blockSize = stream.LastBlockSize();
    if (start < blockSize) {
        const unsigned long long there = std::min<unsigned long long>(
            {pointDataRecordLength, blockSize - start, mostRecordBytes});
        std::memcpy(bytes.data(), stream.bufferStart + start, wholeFields(there, colorOffset));
    }
    const Record record = colorOffset != 0 ? decode<true>(bytes.data(), scale, offset, colorOffset)
                                           : decode<false>(bytes.data(), scale, offset, 0);
    setPointValues(point, record.x, record.y, record.z, record.red, record.green, record.blue,
                   record.intensity, scanIndex, 1.0);
}

bool LasIO::closeRead() {
    stream.StreamClose();
    return true;
}
