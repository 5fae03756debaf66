#pragma once

#include <cstdint>

#include "core/util/FileBufferStream.h"
#include "io/FileParentIO.h"

/// Reads LAS files, versions 1.0 to 1.4, point record formats 0 to 10: coordinates, intensity and,
/// where the format has one, the colour. Formats without colour give a grey of the intensity.
class LasIO : public FileParentIO {
public:
    explicit LasIO(unsigned long long capacity) : FileParentIO(capacity) {}

    VpcPoint3D* initializeRead(wxString path) override;
    /// Reads and checks the header. On failure errorMessage says what is wrong with it.
    [[nodiscard]] bool readHeader(wxString path, bool closeAfterHeader) override;
    unsigned long long nextPointBatch() override;
    std::optional<vpc::ScanRecords> nextRecordBatch() override;
    bool closeRead() override;
    /// Decodes record `indexInBatch` of the current block. Fields that do not lie wholly within the
    /// record and within what the file holds are 0.
    void ReadPoint(unsigned long long indexInBatch, VpcPoint3D& point);
    void writeMetaInfoToLogfile() const {}

    int versionMajor = 0;
    int versionMinor = 0;
    std::uint16_t fileCreationYear = 0;
    std::uint16_t fileCreationDayOfYear = 0;
    std::uint16_t headerSize = 0;
    std::uint32_t offsetToPointData = 0;
    std::uint32_t numberOfVariableLengthRecords = 0;
    int pointDataFormat = 0;
    std::uint16_t pointDataRecordLength = 0;
    wxString generatingSoftware;
    wxString systemIdentifier;
    /// The bounds that the header claims; kept, not used.
    Corner headerMin{};
    Corner headerMax{};
    Corner scale{};
    Corner offset{};
    /// The open file and its current block.
    FileBufferStream stream;
    /// Bytes of a whole batch in the file. The block in memory has as many, or fewer if the file is
    /// smaller.
    unsigned long long bytesPerBatch = 0;
    /// Where a record's red, green and blue begin; 0 if the format has no colour.
    int colorOffset = 0;

private:
    /// Extended variable-length records that follow one another behind the points.
    struct Trailer {
        /// 0 where there are none.
        unsigned long long start = 0;
        unsigned long long count = 0;
    };

    [[nodiscard]] bool ReadHeaderBlock(const wxString& path);
    [[nodiscard]] bool CheckVersion();
    void ReadHeaderFields();
    [[nodiscard]] bool CheckPointFormat();
    [[nodiscard]] bool Fail(const wxString& text);

    unsigned long long UnexplainedBytes(unsigned long long fileBytes);
    unsigned long long EndOfTrailer(const Trailer& trailer, unsigned long long fileBytes);
    unsigned long long ReadBlock();
    unsigned long long BeginBatch();
    void ReadPoints(unsigned long long first, unsigned long long last);
    template <bool hasColour>
    void DecodePoints(unsigned long long first, unsigned long long last);
    void SurveyRecords(unsigned long long first, unsigned long long last);
    template <bool hasColour>
    void SurveyRecordsOf(unsigned long long first, unsigned long long last);
    bool RecordsAreRegular() const;
    unsigned long long NeededRecordLength() const;
    bool CoordinatesAreInReach() const;
    void ReportMissingRecords(unsigned long long missing);

    /// How many bytes are read for one block: bytesPerBatch, or fewer if the file is smaller.
    unsigned long long blockBytes_ = 0;
    /// The packets of waveforms, which are one record.
    Trailer waveforms_;
    Trailer extendedRecords_;
};
