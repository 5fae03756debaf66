#pragma once

#include "core/geometry/CoordinateGrid.h"
#include "core/geometry/VpcPoint3D.h"

namespace vpc {

/// A batch of points as a scan's records hold them: the three coordinates as integers of 32 bits on
/// a grid, behind them the intensity as one of 16 bits with a sign, and the colour somewhere as
/// three of 16 bits without.
struct ScanRecords {
    static constexpr unsigned coordinatesSize = 12;
    static constexpr unsigned intensityAt = coordinatesSize;
    static constexpr unsigned colourSize = 6;

    /// The first record. They belong to the reader, until it reads its next batch.
    const char* first;
    unsigned long long count;
    /// Bytes from one record to the next.
    unsigned stride;
    /// Where in a record its colour begins; 0 where it has none, and the point is as grey as its
    /// intensity says.
    unsigned colourAt;
    CoordinateGrid grid;
    /// A point of the scan. What the records do not hold is the same in all of them.
    VpcPoint3D example;

    /// Some of the records.
    ScanRecords Part(unsigned long long begin, unsigned long long size) const {
        ScanRecords part = *this;
        part.first += begin * stride;
        part.count = size;
        return part;
    }
};

}  // namespace vpc
