#pragma once

#include <chrono>
#include <string>

#include "core/util/VpcDefinitions.h"
#include "tree/construct/PrepareObserver.h"

namespace vpc {

/// Shows a preparing run on standard error and stops it when the user asks for it: a bar that
/// moves on a terminal, a line every few seconds elsewhere, nothing when quiet.
class ProgressDisplay : public PrepareObserver {
public:
    struct Settings {
        bool quiet;
        /// Whether a run may go on with points that have no values in their text.
        bool allowIncomplete;
        VpcDataFormat format;
        /// Points expected while the scans are still being measured.
        unsigned long long estimatedPoints;
        std::string command;
    };

    explicit ProgressDisplay(Settings settings);

    bool onProgress(const PrepareProgress& progress) override;
    bool onScansMeasured(const ScanSummary& summary, const wxString& message) override;

    /// Takes the bar off the terminal.
    void Clear();
    /// Prints a line on standard error, unless the run is to be quiet, and into the log.
    void Note(const wxString& text);
    /// Prints a warning on standard error and into the log, unless it repeats the last one.
    void Warn(const wxString& text);
    /// Why this object ended the run without the user's asking for it.
    enum class Objection { None, PointsWithoutValues, NoPoints };
    Objection Objected() const { return objection_; }
    /// Points that the scans claim and have no values for; known once they have been measured.
    unsigned long long PointsWithoutValues() const { return pointsWithoutValues_; }

private:
    using Clock = std::chrono::steady_clock;

    void StartStage(PrepareStage stage, Clock::time_point now);
    /// The part of the whole run that is done, 0 to 1.
    double DoneShare(const PrepareProgress& progress) const;
    void Show(const PrepareProgress& progress, Clock::time_point now);

    Settings settings_;
    bool terminal_;
    bool barShown_ = false;
    PrepareStage stage_ = PrepareStage::MeasureScans;
    Clock::time_point start_;
    Clock::time_point stageStart_;
    Clock::time_point lastShown_;
    Objection objection_ = Objection::None;
    unsigned long long pointsWithoutValues_ = 0;
    unsigned long long points_ = 0;
    /// Those that are sorted only while levels are built; known when that begins.
    unsigned long long pointsToSort_ = 0;
    wxString lastWarning_;
};

}  // namespace vpc
