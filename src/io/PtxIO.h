#pragma once

#include <array>
#include <vector>

#include "core/util/VpcDefinitions.h"
#include "io/TextScanIO.h"

namespace vpc {
class TextFileWriter;
}

/// Reads and writes PTX text scans: one or more grids, each with a scanner pose and a registration
/// matrix. The matrix is applied to the points, and cells without a return are dropped.
class PtxIO : public TextScanIO {
public:
    using TextScanIO::TextScanIO;

    /// Opens the file and reads the first scan's header. Returns pointBuffer even when the file
    /// cannot be opened; it then delivers no points.
    VpcPoint3D* initializeRead(wxString path) override;
    /// Reads the next scan's header; false when there is no further scan.
    bool InitializeView();
    /// Reads one point line and appends its point to the batch. Returns the points stored: 0 for
    /// a cell without a return, if `skipEmpty`.
    unsigned long long ReadPointValues(bool skipEmpty);
    /// True when the transform is exactly the identity.
    bool IsIdentityTransform() const;
    /// Consumes up to batchCapacity point lines. Returns the points stored, which are fewer, or
    /// even none, where cells are empty.
    unsigned long long nextPointBatch() override;

    /// Writes `points` as one scan of one row with an identity pose. With the stylizations
    /// elevation and intensity the colours show the elevation. Failures are not reported.
    static void Write(std::vector<VpcPoint3D>& points, wxString path,
                      VpcStylizationType stylization);
    /// The same into an open file; failures throw vpc::IoError.
    static void WriteTo(vpc::TextFileWriter& file, const std::vector<VpcPoint3D>& points,
                        VpcStylizationType stylization);

    /// True while a scan is being read.
    bool hasMoreScans = false;
    /// Cells of the current scan's grid.
    unsigned long long scanPointCount = 0;
    /// Whether the current scan's transform is exactly the identity.
    bool isIdentity = true;
    /// Points stored so far in the current batch.
    unsigned long long pointsInBatch = 0;
    /// Rows 1 to 3 of the matrix without their last column, then the translation.
    std::array<double, 12> transform{1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};

private:
    /// The values of a point line.
    struct Line {
        /// x, y, z and intensity.
        std::array<double, 4> values{};
        std::array<int, 3> colour{};
    };

    bool ScanGridSize();
    void ScanPose();
    Line ScanLine();
    std::size_t ValuesOnNextLine();

    /// The current scan's point lines have no colour columns.
    bool hasNoColour_ = false;
};
