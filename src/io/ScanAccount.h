#pragma once

#include <vector>

#include <wx/string.h>

#include "core/util/VpcDefinitions.h"

/// A place where a text scan is not what its format says, the first of its kind.
struct ScanFault {
    enum class Kind {
        NoText,    ///< there is nothing but white space
        NoCount,   ///< what the text begins with is no count above 0; in PTX, no grid with cells
        OddCount,  ///< more stands on the line than the count, or the grid's size, that it was
                   ///< taken for
        UnreadableLayout,  ///< the second line of a PTS has a number of values that no point has
        NoNumber,          ///< a value is no number
        OddLine,           ///< a line has more or fewer values than a point
        UnreadLines        ///< text that follows all points claimed
    };
    Kind kind = Kind::NoText;
    /// Bytes of the file before it; there may be white space between.
    unsigned long long position = 0;
    /// The number of its line, from 1; 0 until it is known.
    unsigned long long line = 0;
    /// What stands on that line, shortened.
    wxString text;
};

/// What became of everything in one scan: the points that its reader delivered, and whatever in the
/// file did not become the points that it should. Plain values, so that a host may read them on
/// whichever side of a plug-in it is.
struct ScanAccount {
    wxString file;
    VpcDataFormat format = DataFormat_Unknown;
    /// Whether it could be opened; a text scan that cannot is left out.
    bool opened = false;
    /// The system's reason (errno) for which it could not; 0 where it gave none.
    int openError = 0;

    /// Points that the reader delivered.
    unsigned long long points = 0;
    /// Points that the header or the count lines claim; in PTX, cells of the grids.
    unsigned long long claimedPoints = 0;
    /// Points delivered that have a coordinate that is not finite: they are left out of the tree.
    unsigned long long nonFinitePoints = 0;
    /// Points claimed for which the text gave no value at all. The PTS reader delivers zeros for
    /// them or what its buffer held, the PTX reader delivers nothing.
    unsigned long long pointsWithoutValues = 0;
    /// Points claimed of which some values came and the others were taken for 0.
    unsigned long long pointsCutShort = 0;
    /// Reds, greens and blues of which only the low 16 bits were kept.
    unsigned long long oddColours = 0;
    /// Points that a LAS header claims beyond the records that the file holds.
    unsigned long long missingRecords = 0;
    /// Bytes behind the records of a LAS file that nothing in its header explains.
    unsigned long long unexplainedBytes = 0;
    /// Lines, blank ones left out, from the fault UnreadLines on.
    unsigned long long unreadLines = 0;
    /// Values on a point's line, as the text's layout has them; 0 in LAS.
    unsigned long long valuesPerPoint = 0;
    /// At most one of each kind.
    std::vector<ScanFault> faults;

    /// All of this in words: a sentence for everything that was not accounted for, which begins
    /// with the file's name. Empty until Describe is called.
    std::vector<wxString> sentences;

    /// True when every byte of the scan was accounted for. Known when the account is described.
    bool IsWhole() const { return sentences.empty(); }
    /// The fault of that kind; null where there is none.
    const ScanFault* Find(ScanFault::Kind kind) const {
        for (const ScanFault& fault : faults)
            if (fault.kind == kind) return &fault;
        return nullptr;
    }
    /// Adds a fault, unless there is one of its kind.
    void Note(ScanFault::Kind kind, unsigned long long position) {
        if (Find(kind) == nullptr) faults.push_back({kind, position, 0, {}});
    }
    /// Sets the sentences, translated, from all that is said above.
    void Describe();
    /// The sentence about the records that are missing.
    wxString MissingRecordsText() const;
};
