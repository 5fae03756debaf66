#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <wx/string.h>

#include "core/geometry/CoordinateGrid.h"
#include "core/geometry/VpcNumMathTools.h"
#include "core/geometry/VpcPoint3D.h"
#include "io/ScanAccount.h"
#include "io/ScanRecords.h"

/// A reader of scan files: hands out a file's points in batches and keeps the extent and the
/// largest colour and intensity values of what it has read.
///
/// Every caller keeps this order:
///
///     reader.initializeRead(file);              // null: failed, errorMessage may say why
///     while (reader.pointsRemaining != 0) {
///         const auto n = reader.nextPointBatch();  // the first n elements of pointBuffer
///     }
///     reader.closeRead();
///
/// Where nextRecordBatch gives a batch of a file, it may be asked for all of them in place of
/// nextPointBatch.
///
/// One reader may read several files in turn. Extent, message and the counts of irregular points
/// are those of the current file; the colour and intensity maxima go over all files, unless a
/// reader restarts them.
class FileParentIO {
public:
    /// One corner of an extent.
    struct Corner {
        double x;
        double y;
        double z;
    };

    /// \param capacity the most points that one batch holds
    explicit FileParentIO(unsigned long long capacity);
    FileParentIO(const FileParentIO&) = delete;
    FileParentIO& operator=(const FileParentIO&) = delete;
    virtual ~FileParentIO() = default;

    /// Opens the file and prepares the counters. Returns pointBuffer, or null on failure; a caller
    /// may ignore that, since a file that failed has no points remaining. This and nextPointBatch
    /// throw vpc::IoError where the system cannot read on.
    virtual VpcPoint3D* initializeRead(wxString path) = 0;
    /// Reads and checks the header of formats that have one; true when it is valid.
    [[nodiscard]] virtual bool readHeader(wxString path, bool closeAfterHeader) = 0;
    /// Fills pointBuffer from its start; returns the number of points filled.
    virtual unsigned long long nextPointBatch() = 0;
    /// The next batch without a point being made: the records as they are in the file. None where
    /// the file has no records of that kind; the batch is then still to come. Everything that
    /// nextPointBatch counts is counted, and pointBuffer keeps one point of the file.
    virtual std::optional<vpc::ScanRecords> nextRecordBatch() { return std::nullopt; }
    /// Closes the file; returns true.
    virtual bool closeRead() = 0;

    /// Makes the extent the one point (x, y, z), or empty where a coordinate is not finite.
    void InitializeExtent(double x, double y, double z);
    /// Widens the extent by a point; one that is not finite changes nothing.
    void UpdateExtent(double x, double y, double z) {
        if (VpcNumMathTools::AreCoordinates(x, y, z)) WidenExtent(x, y, z);
    }
    /// Raises the maxima; the colours are truncated to integers.
    void UpdateColorIntensityRanges(double r, double g, double b, double intensity);
    /// Stores a point with its colours truncated to integers of 16 bits, raises the maxima and
    /// widens the extent. A point with a coordinate that is not finite is stored and counted in
    /// nonFinitePoints, and changes neither.
    void setPointValues(VpcPoint3D& point, double x, double y, double z, double r, double g,
                        double b, double intensity, int pointScanIndex, double lastValue) {
        const std::uint16_t red = KeepColour(r);
        const std::uint16_t green = KeepColour(g);
        const std::uint16_t blue = KeepColour(b);
        point.SetValues(x, y, z, red, green, blue, intensity, pointScanIndex, lastValue);
        if (!VpcNumMathTools::AreCoordinates(x, y, z)) {
            ++nonFinitePoints;
            return;
        }
        if (red > maxRed) maxRed = red;
        if (green > maxGreen) maxGreen = green;
        if (blue > maxBlue) maxBlue = blue;
        if (intensity > maxIntensity) maxIntensity = intensity;
        WidenExtent(x, y, z);
    }

    /// What became of the current file so far, without its format and the points delivered, which
    /// the caller knows, and with faults whose lines are not known yet.
    ScanAccount Account() const;

    /// True when the extent holds at least one point.
    bool HasExtent() const { return extentMin.x <= extentMax.x; }

    /// Points that the current file declares in its header; 0 where the format has none.
    unsigned long long numberOfPoints = 0;
    /// The most points that one batch holds.
    unsigned long long batchCapacity;
    /// Batches that the declared points make.
    unsigned long long numberOfBatches = 0;
    /// Points delivered, as the LAS reader counts them.
    unsigned long long pointsRead = 0;
    /// Points still to deliver; the file is done when this is 0.
    unsigned long long pointsRemaining = 0;
    /// Index of the next batch within the current file.
    unsigned long long batchIndex = 0;

    /// The batch: `batchCapacity` points, which belong to the reader.
    VpcPoint3D* pointBuffer;
    /// The last failure or warning about the current file; empty where there is none.
    wxString errorMessage;
    /// Stamped into every point as its source index.
    int scanIndex = -1;
    /// The file being read.
    wxString fileName;
    /// Whether it could be opened.
    bool opened = false;
    /// The system's reason (errno) for which it could not; 0 where it gave none.
    int openError = 0;
    std::uint16_t maxRed = 0;
    std::uint16_t maxGreen = 0;
    std::uint16_t maxBlue = 0;
    double maxIntensity = 0;
    /// The extent of the points read from the current file; the empty box where there are none.
    Corner extentMin;
    Corner extentMax;

    /// The grid that the current file's coordinates lie on; none where the format has none.
    std::optional<vpc::CoordinateGrid> grid;

    /// Points delivered from the current file that have a coordinate that is not finite.
    unsigned long long nonFinitePoints = 0;
    /// Points of the current file that its count line claims and for which no value at all came
    /// from its text.
    unsigned long long pointsWithoutValues = 0;
    /// Points that the current file's header claims beyond the records that the file holds.
    unsigned long long missingRecords = 0;
    /// A point count found in the current file that cannot be true, since it is greater than the
    /// file's size in bytes; 0 where there is none. The reader goes on as the count says.
    unsigned long long impossibleCount = 0;

protected:
    /// Throws vpc::IoError for a file that the system cannot read on, with the system's reason
    /// (errno). To go on with what came before would be to lose the rest of the points, or to make
    /// them up.
    [[noreturn]] void FailReading(int systemReason) const;
    /// Starts on another file: everything that is kept per file is as in a new reader.
    void BeginFile(const wxString& path);
    /// Notes a count that cannot be true.
    void CheckCount(unsigned long long count) {
        if (count > fileBytes_ && impossibleCount == 0) impossibleCount = count;
    }
    /// The batches that `points` make.
    unsigned long long BatchesOf(unsigned long long points) const;

    /// Whether `value`, truncated to an integer, is one of 16 bits.
    static bool FitsUint16(double value) { return value > -1.0 && value < 65536.0; }
    /// A value that fits as that integer.
    static std::uint16_t Truncate(double value) {
        return static_cast<std::uint16_t>(static_cast<std::int32_t>(value));
    }
    /// `value` truncated to an integer, of which the low 16 bits stay; 0 where no 64-bit integer
    /// holds it.
    static std::uint16_t ToUint16(double value) {
        // The common case first: a conversion to 32 bits, with no test for the sign.
        if (FitsUint16(value)) return Truncate(value);
        constexpr double limit = 9223372036854775808.0;
        if (!(value >= -limit && value < limit)) return 0;
        return static_cast<std::uint16_t>(static_cast<std::int64_t>(value));
    }

    /// What the readers find that the counters above do not tell.
    ScanAccount account_;

private:
    void WidenExtent(double x, double y, double z) {
        if (x < extentMin.x) extentMin.x = x;
        if (x > extentMax.x) extentMax.x = x;
        if (y < extentMin.y) extentMin.y = y;
        if (y > extentMax.y) extentMax.y = y;
        if (z < extentMin.z) extentMin.z = z;
        if (z > extentMax.z) extentMax.z = z;
    }
    void EmptyExtent();
    std::uint16_t KeepColour(double value) {
        return FitsUint16(value) ? Truncate(value) : KeepLowBits(value);
    }
    /// Counts a colour that does not fit; returns what is kept of it.
    [[gnu::cold]] std::uint16_t KeepLowBits(double value);

    std::vector<VpcPoint3D> points_;
    unsigned long long fileBytes_ = 0;
};
