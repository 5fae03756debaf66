#pragma once

#include <functional>

/// What a full pass over the scans tells beside their bounding box.
struct ScanSummary {
    /// Points that the readers delivered, over all files.
    unsigned long long points = 0;
    /// Those of them with a coordinate that is not finite; they belong to no box.
    unsigned long long nonFinitePoints = 0;
    /// Points that a text file's count line claims and for which its text held no value at all;
    /// the readers made them up of zeros.
    unsigned long long pointsWithoutValues = 0;
    /// Points that LAS headers claim beyond the records that their files hold.
    unsigned long long missingRecords = 0;
    /// Whether the first file could be opened. Text files that cannot are left out.
    bool firstFileOpened = false;
};

/// Called after every batch with the points read so far and the points known to come in all (a
/// lower bound: a text file tells its count only when its reading begins). False asks to stop.
using ScanProgress =
    std::function<bool(unsigned long long pointsDone, unsigned long long pointsInAll)>;
