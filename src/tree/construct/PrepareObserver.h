#pragma once

#include <wx/string.h>

#include "io/ScanSummary.h"

/// The stages of preprocessing, in their order.
enum class PrepareStage {
    MeasureScans,  ///< reading every scan once for the common bounding box
    AddPoints,     ///< reading every scan again, into the tree
    /// sorting the points that a lack of memory kept from being sorted before, and counting those
    /// that the coarser levels get
    BuildLevels,
    WriteFile  ///< writing the point tree file
};

/// How far a run is.
struct PrepareProgress {
    PrepareStage stage = PrepareStage::MeasureScans;
    /// Points done in this stage, and points that it has to do in all. While levels are built these
    /// are only those that are still to be sorted, perhaps none; while the file is written, those
    /// of all levels. The number in all may grow while the scans are measured; it is 0 until it is
    /// known.
    unsigned long long pointsDone = 0;
    unsigned long long pointsInAll = 0;
};

/// Watches one preprocessing run and can end it. Called on the run's own thread; the run waits for
/// the call to return. A call must not throw.
class PrepareObserver {
public:
    virtual ~PrepareObserver() = default;

    /// Called after every batch of points and every node written, and without any points done when
    /// the last two stages begin. False asks the run to stop: it removes its temporary files and
    /// fails with the message "Point cloud preprocessing was cancelled".
    virtual bool onProgress(const PrepareProgress& progress) = 0;

    /// Called once, when every scan has been measured and before anything is built. `summary` tells
    /// what became of each scan; `message` has the sentences of all of them, one a line, and is
    /// empty where every byte of every scan was accounted for. False stops the run as above.
    virtual bool onScansMeasured(const ScanSummary& summary, const wxString& message) {
        static_cast<void>(summary);
        static_cast<void>(message);
        return true;
    }

protected:
    PrepareObserver() = default;
    PrepareObserver(const PrepareObserver&) = default;
    PrepareObserver& operator=(const PrepareObserver&) = default;
};
