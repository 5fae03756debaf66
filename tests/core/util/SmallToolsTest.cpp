#include <chrono>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <regex>
#include <string>

#include <gtest/gtest.h>
#include <wx/datetime.h>

#include "core/util/StringTools.h"
#include "core/util/VpcLogger.h"
#include "core/util/VpcTimer.h"
#include "support/TempFolder.h"

namespace {

using vpc::test::TempFolder;
using vpc::test::toWx;

// --- Strings -------------------------------------------------------------------------------------

TEST(StringTools, ReplaceFileExtension) {
    const std::pair<const char*, const char*> cases[] = {
        {"/data/scan.pts", "/data/scan.vpt"}, {"/data/scan", "/data/scan.vpt"},
        {"/da.ta/scan", "/da.ta/scan.vpt"},   {"scan.tar.gz", "scan.tar.vpt"},
        {"/data/.scan", "/data/.scan.vpt"},   {"scan.", "scan.vpt"},
        {"../Größe.LAS", "../Größe.vpt"}};
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(StringTools::ReplaceFileExtension(wxString::FromUTF8(path), "vpt"),
                  wxString::FromUTF8(expected));
    EXPECT_EQ(StringTools::ReplaceFileExtension("a.b", ""), "a");
}

TEST(StringTools, SplitsTextAndMakesUpNames) {
    using Tokens = std::vector<wxString>;
    EXPECT_EQ(StringTools::Split("a,,b", ","), (Tokens{"a", "", "b"}));
    EXPECT_EQ(StringTools::Split("a  b", " "), (Tokens{"a", "b"}));
    EXPECT_NE(StringTools::createGUID(), StringTools::createGUID());
}

// --- Time ----------------------------------------------------------------------------------------

TEST(VpcTimer, FormatsAMeasurementOnce) {
    VpcTimer* const timer = VpcTimer::Instance();
    const std::pair<double, const char*> cases[] = {
        {3725.5, "01h:02m:05s.500ms"},
        {59.9999, "00h:00m:59s.999ms"},
        {360000 + 0.125, "100h:00m:00s.125ms"},
        {-5, "00h:00m:00s.000ms"},
        {std::numeric_limits<double>::quiet_NaN(), "00h:00m:00s.000ms"}};
    for (const auto& [seconds, text] : cases) {
        timer->elapsedSeconds = seconds;
        EXPECT_EQ(timer->ElapsedTimeToString(), text);
    }
    timer->elapsedSeconds = 3725.5;
    timer->ElapsedTimeToString();
    EXPECT_EQ(timer->elapsedSeconds, 0.5) << "the whole seconds are used up";
    timer->Start();
    timer->startTime -= std::chrono::seconds(90);
    const auto elapsed = static_cast<double>(timer->Stop());
    EXPECT_EQ(std::floor(elapsed / 1e7), 9);
    EXPECT_EQ(timer->elapsedSeconds, elapsed / 1e6);
    VpcTimer::Release();
    EXPECT_EQ(VpcTimer::Instance()->elapsedSeconds, 0) << "a new one";
}

TEST(VpcTimer, TellsTheLocalTimeInMilliseconds) {
    const auto ahead = [] {
        const wxDateTime time = wxDateTime::UNow() + wxTimeSpan::Minutes(345);
        return time.Format("[%Y-%m-%d %H:%M:%S.%l]", wxDateTime::UTC);
    };
    setenv("TZ", "TST-5:45", 1);
    tzset();
    const wxString before = ahead(), stamp = VpcTimer::GetCurrentTimeAsString(), after = ahead();
    unsetenv("TZ");
    tzset();
    EXPECT_TRUE(before <= stamp && stamp <= after) << before << stamp << after;
}

// --- Log -----------------------------------------------------------------------------------------

/// The log with every time stamp, checked for its form, as "T".
std::string withoutTimes(const std::string& log) {
    const std::regex stamp("\\[\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}\\]");
    return std::regex_replace(log, stamp, "T");
}

TEST(VpcLogger, WritesLinesAtOnceAndReplacesTheLast) {
    const TempFolder folder;
    const std::filesystem::path file = folder.path() / "Protokoll ä.log";
    const auto text = [&file] { return withoutTimes(vpc::test::readBytes(file)); };
    vpc::test::writeBytes(file, std::string(5000, 'o'));
    VpcLogger* const log = VpcLogger::Instance();
    log->Open(toWx(file));
    VpcTimer::Instance()->startTime -= std::chrono::hours(2);
    log->Open(toWx(folder.path() / "second.log"));
    EXPECT_EQ(folder.names().size(), 1U) << "one log at a time";
    const std::string opened = "T\t Opened logging\r\n";
    EXPECT_EQ(text(), opened) << "an older log is overwritten";
    log->Add(wxString::FromUTF8("Grö"));
    log->Add("a much longer line");
    log->Add("50 %", true);
    log->Add("75 %", true);
    const std::string replaced = opened + "T\t Grö\r\nT\t 75 %\r\n";
    EXPECT_EQ(text(), replaced + " longer line\r\n") << "what the longer line had beyond remains";
    log->Close();
    const std::regex closing(
        "T\t Closed logging, log file was open for 02h:00m:\\d\\ds.\\d{3}ms\r\n");
    EXPECT_EQ(text().substr(0, replaced.size()), replaced);
    EXPECT_TRUE(std::regex_match(text().substr(replaced.size()), closing)) << text();
    log->Open(toWx(file));
    log->Add("75 %", true);
    EXPECT_EQ(text(), "T\t 75 %\r\n logging\r\n") << "begins anew";
    log->Close();
    log->Open("/dev/full");
    log->Add("lost, quietly");
    log->Close();
}

}  // namespace
