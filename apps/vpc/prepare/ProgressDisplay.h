#pragma once

#include <chrono>
#include <functional>
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
        VpcDataFormat format;
        /// Whether texts are copied when they are checked.
        bool copiesTexts;
        /// Points expected while the scans are still being measured.
        unsigned long long estimatedPoints;
        std::string command;
        /// Puts the users' names of scans into a message of the library.
        std::function<wxString(const wxString&)> inUsersNames;
    };

    explicit ProgressDisplay(Settings settings);

    /// Shows how many bytes of the texts have been checked. This comes before the run.
    void ShowChecking(unsigned long long bytesDone, unsigned long long bytesInAll);
    bool onProgress(const PrepareProgress& progress) override;
    bool onScansMeasured(const ScanSummary& summary, const wxString& message) override;

    /// Takes the bar off the terminal.
    void Clear();
    /// Prints a warning on standard error and into the log, unless it repeats the last one.
    void Warn(const wxString& text);
    /// Prints on standard error, unless quiet, and into the log what is worth knowing.
    void Note(const wxString& text);
    /// Why this object ended the run without the user's asking for it.
    enum class Objection { None, TextChanged, NoPoints };
    Objection Objected() const { return objection_; }

private:
    using Clock = std::chrono::steady_clock;

    void StartStage(PrepareStage stage, Clock::time_point now);
    bool IsTimeToShow(Clock::time_point now) const;
    /// The part of the whole run that is done, 0 to 1.
    double DoneShare(const PrepareProgress& progress) const;
    /// Shows the share of the whole run, the stage, and how fast it goes.
    void Show(double share, const char* stage, const std::string& rate, Clock::time_point now);
    void PrintLine(const wxString& text) const;

    Settings settings_;
    bool terminal_;
    bool barShown_ = false;
    PrepareStage stage_ = PrepareStage::MeasureScans;
    Clock::time_point start_;
    Clock::time_point stageStart_;
    Clock::time_point lastShown_;
    Objection objection_ = Objection::None;
    unsigned long long points_ = 0;
    /// Those that are sorted only while levels are built; known when that begins.
    unsigned long long pointsToSort_ = 0;
    wxString lastWarning_;
};

}  // namespace vpc
