#pragma once

#include "vpc/export/ExportOutput.h"
#include "vpc/export/ExportSource.h"

namespace vpc {

/// Writes points as scans of text: a line "x y z intensity red green blue" for each.
class TextExport {
public:
    /// The number of points, then their lines.
    static void WritePts(ExportSource& source, const ExportOutput& out);
    /// One scan of one row with the identity as its pose. Points at 0, 0, 0 would be read as cells
    /// without a return, so they follow in a second scan, whose pose moves them there.
    static void WritePtx(ExportSource& source, const ExportOutput& out);
    /// The lines alone.
    static void WriteXyz(ExportSource& source, const ExportOutput& out);
    /// Lines with commas, below one with the names of the columns.
    static void WriteCsv(ExportSource& source, const ExportOutput& out);
};

}  // namespace vpc
