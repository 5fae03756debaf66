#pragma once

#include <array>
#include <vector>

#include "io/TextScanIO.h"

namespace vpc {
class TextFileWriter;
}

/// Reads PTS text scans: blocks of a count line and as many point lines of 3, 4, 6 or 7 values
/// (x y z, intensity where there are 4 or 7, red green blue where there are 6 or 7). The intensity
/// of 6 values is the mean of the colours. Writes them.
class PtsIO : public TextScanIO {
public:
    using TextScanIO::TextScanIO;

    /// Opens the file and reads the first count line. Returns pointBuffer even when the file
    /// cannot be opened; it then delivers no points.
    VpcPoint3D* initializeRead(wxString path) override;
    /// Reads the next count line and prepares the counters for its block; false when there is no
    /// further block.
    bool InitializeView();
    unsigned long long nextPointBatch() override;

    // Each reads one point of that many values. Values that are missing are 0.
    void AddPoint3Tokens(VpcPoint3D& point);
    void AddPoint4Tokens(VpcPoint3D& point);
    void AddPoint6Tokens(VpcPoint3D& point);
    void AddPoint7Tokens(VpcPoint3D& point);

    /// Writes `points` as one block of six columns, or, with `colorByElevation`, of seven columns
    /// with the scaled elevation as intensity and as colour. Failures are not reported.
    static void Write(std::vector<VpcPoint3D> points, wxString path, bool colorByElevation);
    /// The same into an open file; failures throw vpc::IoError.
    static void WriteTo(vpc::TextFileWriter& file, const std::vector<VpcPoint3D>& points,
                        bool colorByElevation);

    /// True while a block with points is being read.
    bool hasMoreBlocks = false;
    /// The count of the current block's count line.
    unsigned long long blockPointCount = 0;
    /// Always 0: a missing count line is not replaced by the number of lines. The member stays
    /// because hosts and the library agree on it.
    unsigned long long countedLines = 0;
    /// How many values a point line has. The file's second line decides for all of them.
    long long tokensPerLine = 0;

private:
    void NoteUnreadableLayout();
    template <std::size_t count>
    std::array<double, count> ScanValues();
    using PointReader = void (PtsIO::*)(VpcPoint3D&);
    PointReader ReaderOfLayout() const;
    void ReadPoints(PointReader addPoint, unsigned long long count);
    /// Delivers what the buffer holds already, for point lines of an unknown layout; the extent
    /// covers what is delivered.
    void DeliverBufferAsItIs(unsigned long long count);
};
