#pragma once

#include <functional>
#include <vector>

#include "io/ScanAccount.h"

/// What a full pass over the scans finds besides their bounding box.
struct ScanSummary {
    /// What became of each scan, in the order of the scans.
    std::vector<ScanAccount> scans;

    // The sums over all scans.

    /// Points that the readers delivered.
    unsigned long long points = 0;
    /// Those of them with a coordinate that is not finite; they belong to no box.
    unsigned long long nonFinitePoints = 0;
    /// Points that a text file's count line claims but for which the text holds no value. The
    /// readers deliver them as zeros.
    unsigned long long pointsWithoutValues = 0;
    /// Points that LAS headers claim beyond the records that their files hold.
    unsigned long long missingRecords = 0;
    /// Whether the first file could be opened. Text files that cannot are left out.
    bool firstFileOpened = false;

    /// Adds the account of the next scan.
    void Add(const ScanAccount& scan) {
        if (scans.empty()) firstFileOpened = scan.opened;
        points += scan.points;
        nonFinitePoints += scan.nonFinitePoints;
        pointsWithoutValues += scan.pointsWithoutValues;
        missingRecords += scan.missingRecords;
        scans.push_back(scan);
    }
    /// Whether every byte of every scan was accounted for.
    bool IsWhole() const {
        for (const ScanAccount& scan : scans)
            if (!scan.IsWhole()) return false;
        return true;
    }
};

/// Called after every batch with the points read so far and the points known to come in all. That
/// is a lower bound, because a text file tells its count only when it is read. Returning false asks
/// to stop.
using ScanProgress =
    std::function<bool(unsigned long long pointsDone, unsigned long long pointsInAll)>;
