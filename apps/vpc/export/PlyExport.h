#pragma once

#include "vpc/export/ExportOutput.h"
#include "vpc/export/ExportSource.h"

namespace vpc {

/// Writes points as a binary PLY file: coordinates as doubles, colours in as many bytes as they
/// need, and a property "intensity".
class PlyExport {
public:
    static void Write(ExportSource& source, const ExportOutput& out);
};

}  // namespace vpc
