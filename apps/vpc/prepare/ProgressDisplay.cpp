#include "vpc/prepare/ProgressDisplay.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <utility>

#include <wx/arrstr.h>
#include <nlohmann/json.hpp>

#include "core/util/DisplayText.h"
#include "core/util/FileTools.h"
#include "core/util/VpcLogger.h"
#include "vpc/common/Interrupt.h"

namespace vpc {

namespace {

constexpr std::chrono::milliseconds barInterval(100);
constexpr std::chrono::milliseconds lineInterval(3000);
constexpr std::chrono::milliseconds jsonInterval(200);
/// There is no forecast before this share of a run is done and has taken this long.
constexpr double shareToForecast = 0.03;
constexpr double secondsToForecast = 1.0;

constexpr std::size_t stages = 4;
constexpr std::array<const char*, stages> stageNames = {"measuring scans", "sorting points",
                                                        "building levels", "writing file"};
constexpr const char* checkingName = "checking scans";
/// The shares of a run's time that reading takes. The rest belongs to the last two stages.
struct ReadingShares {
    double checking;
    double measuring;
    double adding;
};
constexpr ReadingShares binaryShares = {0.0, 0.08, 0.40};
constexpr ReadingShares textShares = {0.15, 0.26, 0.38};
constexpr ReadingShares copiedTextShares = {0.32, 0.21, 0.29};

ReadingShares sharesFor(VpcDataFormat format, bool copiesTexts) {
    if (format == DataFormat_LAS) return binaryShares;
    return copiesTexts ? copiedTextShares : textShares;
}

/// The time that it takes to sort a point while levels are built, if it has to be sorted there, in
/// times of what the writing takes for a point of the scans.
constexpr double sortingToWriting = 0.2;

double secondsBetween(std::chrono::steady_clock::time_point a,
                      std::chrono::steady_clock::time_point b) {
    return std::chrono::duration<double>(b - a).count();
}

}  // namespace

ProgressDisplay::ProgressDisplay(Settings settings)
    : settings_(std::move(settings)),
      start_(Clock::now()),
      stageStart_(start_),
      lastShown_(start_) {
}

bool ProgressDisplay::onProgress(const PrepareProgress& progress) {
    if (Interrupt::Requested()) return false;
    const auto now = Clock::now();
    if (progress.stage != stage_) StartStage(progress.stage, now);
    if (stage_ == PrepareStage::BuildLevels) pointsToSort_ = progress.pointsInAll;
    if (IsTimeToShow(now)) {
        const double inStage = secondsBetween(stageStart_, now);
        const auto done = static_cast<double>(progress.pointsDone);
        Show({DoneShare(progress), stageNames[static_cast<std::size_t>(progress.stage)],
              progress.pointsDone, inStage > 0.0 ? done / inStage : 0.0, false},
             now);
    }
    return true;
}

bool ProgressDisplay::IsTimeToShow(Clock::time_point now) const {
    switch (settings_.style) {
        case Style::Quiet:
            return false;
        case Style::Json:
            return now - lastShown_ >= jsonInterval;
        default:
            return now - lastShown_ >= (line_.IsPossible() ? barInterval : lineInterval);
    }
}

void ProgressDisplay::ShowChecking(unsigned long long bytesDone, unsigned long long bytesInAll) {
    const auto now = Clock::now();
    // The stage that follows begins with the last of these calls.
    stageStart_ = now;
    if (!IsTimeToShow(now)) return;
    const auto done = static_cast<double>(bytesDone);
    const double part = bytesInAll == 0 ? 0.0 : done / static_cast<double>(bytesInAll);
    const double elapsed = secondsBetween(start_, now);
    const double share = sharesFor(settings_.format, settings_.copiesTexts).checking;
    // A text whose last lines turn out not to be plain is read twice.
    Show({share * std::min(part, 1.0), checkingName, bytesDone,
          elapsed > 0.0 ? done / elapsed : 0.0, true},
         now);
}

bool ProgressDisplay::onScansMeasured(const ScanSummary& summary, const wxString& message) {
    VpcLogger::Instance()->Add(wxString::Format("The scans hold %llu points", summary.points),
                               false);
    if (!message.empty()) Warn(settings_.inUsersNames(message));
    if (summary.missingRecords > 0 && message.empty())
        Warn(wxString::Format("the scans hold %llu points fewer than their headers claim",
                              summary.missingRecords));
    // Every value was there when the texts were checked.
    if (summary.pointsWithoutValues > 0)
        objection_ = Objection::TextChanged;
    else if (summary.points <= summary.nonFinitePoints)
        objection_ = Objection::NoPoints;
    points_ = summary.points;
    return objection_ == Objection::None && !Interrupt::Requested();
}

void ProgressDisplay::StartStage(PrepareStage stage, Clock::time_point now) {
    stage_ = stage;
    stageStart_ = now;
    // Programs are told of every stage.
    if (settings_.style == Style::Json) lastShown_ = {};
    const char* name = stageNames[static_cast<std::size_t>(stage)];
    VpcLogger::Instance()->Add(wxString("Stage: ") + name, false);
}

double ProgressDisplay::DoneShare(const PrepareProgress& progress) const {
    const ReadingShares reading = sharesFor(settings_.format, settings_.copiesTexts);
    const double rest = 1.0 - reading.checking - reading.measuring - reading.adding;
    const double sorting = sortingToWriting * static_cast<double>(pointsToSort_);
    const double building =
        pointsToSort_ == 0 ? 0.0 : rest * sorting / (sorting + static_cast<double>(points_));
    const std::array<double, stages> shares = {reading.measuring, reading.adding, building,
                                               rest - building};
    const auto stage = static_cast<std::size_t>(progress.stage);
    double share = reading.checking;
    for (std::size_t earlier = 0; earlier < stage; ++earlier) share += shares[earlier];
    unsigned long long inAll = progress.pointsInAll;
    if (progress.stage == PrepareStage::MeasureScans)
        inAll = std::max(inAll, settings_.estimatedPoints);
    if (inAll == 0) return share;
    const double done = static_cast<double>(progress.pointsDone) / static_cast<double>(inAll);
    return share + shares[stage] * std::min(done, 1.0);
}

void ProgressDisplay::Show(const Step& step, Clock::time_point now) {
    lastShown_ = now;
    const double elapsed = secondsBetween(start_, now);
    std::optional<double> left;
    if (step.share >= shareToForecast && elapsed >= secondsToForecast)
        left = elapsed * (1.0 - step.share) / step.share;
    if (settings_.style == Style::Json)
        ShowJson(step, left);
    else
        ShowWords(step, left);
}

void ProgressDisplay::ShowWords(const Step& step, std::optional<double> secondsLeft) {
    std::string line = percentText(step.share);
    line.resize(std::max<std::size_t>(line.size(), 5), ' ');
    line += std::string("  ") + step.stage;
    if (step.perSecond > 0.0)
        line +=
            "  " +
            (step.countsBytes ? DisplayText::Bytes(static_cast<unsigned long long>(step.perSecond))
                              : DisplayText::Short(step.perSecond) + " points") +
            "/s";
    if (secondsLeft) line += "  " + DisplayText::Duration(*secondsLeft) + " left";
    if (line_.IsPossible())
        line_.Show(step.share, line);
    else
        std::fprintf(stderr, "%s\n", line.c_str());
}

void ProgressDisplay::ShowJson(const Step& step, std::optional<double> secondsLeft) {
    nlohmann::ordered_json line = {{"stage", step.stage},
                                   {"share", step.share},
                                   {step.countsBytes ? "bytes" : "points", step.done},
                                   {"perSecond", std::floor(step.perSecond)}};
    if (secondsLeft) line["secondsLeft"] = *secondsLeft;
    std::printf("%s\n", line.dump().c_str());
    std::fflush(stdout);
}

void ProgressDisplay::Warn(const wxString& text) {
    if (text == lastWarning_) return;
    lastWarning_ = text;
    Clear();
    wxString line = text;
    line.Trim(true).Trim(false);
    VpcLogger::Instance()->Add("Warning: " + line, false);
    PrintLine("warning: " + line);
    for (const wxString& one : wxSplit(line, '\n', '\0'))
        warnings_.push_back(FileTools::ToNativePath(one));
}

void ProgressDisplay::Note(const wxString& text) {
    VpcLogger::Instance()->Add(text, false);
    if (settings_.quiet) return;
    Clear();
    PrintLine(text);
}

void ProgressDisplay::PrintLine(const wxString& text) const {
    std::fprintf(stderr, "%s: %s\n", settings_.command.c_str(),
                 FileTools::ToNativePath(text).c_str());
}

}  // namespace vpc
