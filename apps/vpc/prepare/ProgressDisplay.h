#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/util/VpcDefinitions.h"
#include "tree/construct/PrepareObserver.h"
#include "vpc/common/TerminalLine.h"

namespace vpc {

/// Shows a preparing run and stops it when the user asks for it. For people it shows on standard
/// error a bar that moves on a terminal and a line every few seconds elsewhere; for programs it
/// prints lines of JSON on standard output.
class ProgressDisplay : public PrepareObserver {
public:
    enum class Style { Words, Json, Quiet };
    struct Settings {
        Style style;
        /// Whether only warnings are told.
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
    void Clear() { line_.Clear(); }
    /// Prints a warning on standard error and into the log, unless it repeats the last one.
    void Warn(const wxString& text);
    /// Prints on standard error, unless quiet, and into the log what is worth knowing.
    void Note(const wxString& text);
    /// The warnings so far, a line each, in the system's encoding.
    const std::vector<std::string>& Warnings() const { return warnings_; }
    /// Why this object ended the run without the user's asking for it.
    enum class Objection { None, TextChanged, NoPoints };
    Objection Objected() const { return objection_; }

private:
    using Clock = std::chrono::steady_clock;
    /// How far a run is.
    struct Step {
        /// The part of the whole run that is done, 0 to 1.
        double share;
        const char* stage;
        /// Points or bytes done in this stage, and how fast it goes; 0 until that is known.
        unsigned long long done;
        double perSecond;
        bool countsBytes;
    };

    void StartStage(PrepareStage stage, Clock::time_point now);
    bool IsTimeToShow(Clock::time_point now) const;
    /// The part of the whole run that is done, 0 to 1.
    double DoneShare(const PrepareProgress& progress) const;
    void Show(const Step& step, Clock::time_point now);
    void ShowWords(const Step& step, std::optional<double> secondsLeft);
    static void ShowJson(const Step& step, std::optional<double> secondsLeft);
    void PrintLine(const wxString& text) const;

    Settings settings_;
    TerminalLine line_;
    std::vector<std::string> warnings_;
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
