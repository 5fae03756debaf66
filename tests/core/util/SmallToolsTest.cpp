#include <array>
#include <cmath>
#include <limits>
#include <regex>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "core/util/StringTools.h"
#include "core/util/VpcColorTools.h"
#include "core/util/VpcDefinitions.h"
#include "core/util/VpcLogger.h"
#include "core/util/VpcTimer.h"
#include "support/TempFolder.h"

namespace {

using vpc::test::TempFolder;
using vpc::test::toWx;

// --- Strings -------------------------------------------------------------------------------------

TEST(StringTools, Split) {
    using Tokens = std::vector<wxString>;
    const struct {
        wxString text;
        wxString delimiters;
        Tokens tokens;
    } cases[] = {
        {"a,,b", ",", {"a", "", "b"}},  {"a  b", " ", {"a", "b"}},
        {" a\tb ", " \t", {"a", "b"}},  {",a;b", ",;", {"", "a", "b"}},
        {"a, b", ", ", {"a", "", "b"}}, {"", ",", {}},
        {"abc", ",", {"abc"}},
    };
    for (const auto& c : cases) EXPECT_EQ(StringTools::Split(c.text, c.delimiters), c.tokens);
}

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

TEST(StringTools, GuidsAreUniqueAndFitForFileNames) {
    const std::regex form("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}");
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        const std::string guid = StringTools::createGUID().ToStdString();
        EXPECT_TRUE(std::regex_match(guid, form)) << guid;
        EXPECT_TRUE(seen.insert(guid).second) << guid;
    }
    const wxString text = wxString::FromUTF8("Größe \U0001F600");
    EXPECT_EQ(StringTools::FromOdString(StringTools::ToOdString(text)), text);
}

// --- Names ---------------------------------------------------------------------------------------

TEST(VpcDefinitions, UnknownValuesHaveTheNameOfADefault) {
    using D = VpcDefinitions;
    EXPECT_EQ(D::GetVpcColorScheme(VPC_ColorScheme_Blues), "VPC_ColorScheme_Blues");
    EXPECT_EQ(D::GetVpcColorScheme(static_cast<VpcColorScheme>(8)), "VPC_ColorScheme_ScanColors");
    EXPECT_EQ(D::GetVpcStylizationType(VPC_Stylization_NONE), "VPC_Stylization_NONE");
    EXPECT_EQ(D::GetVpcStylizationType(static_cast<VpcStylizationType>(4)),
              "VPC_Stylization_SCANCOLORS");
    EXPECT_EQ(D::GetStringVpcDataFormat(DataFormat_PTX), "DataFormat_PTX");
    EXPECT_EQ(D::GetStringVpcDataFormat(static_cast<VpcDataFormat>(4)), "DataFormat_Unknown");
    EXPECT_EQ(D::GetStringVpcTreeType(Tree_KdTree_Symmetric), "Tree_KdTree_Symmetric");
    EXPECT_EQ(D::GetStringVpcTreeType(static_cast<VpcTreeType>(5)), "Tree_Octree");
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
    const long long microseconds = timer->Stop();
    EXPECT_TRUE(microseconds >= 90'000'000 && microseconds < 100'000'000) << microseconds;
    EXPECT_EQ(timer->elapsedSeconds, static_cast<double>(microseconds) / 1e6);
    VpcTimer::Release();
    EXPECT_EQ(VpcTimer::Instance()->elapsedSeconds, 0);
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
    log->Add("swallowed");
    log->Open(toWx(file));
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
    VpcTimer::Instance()->startTime -= std::chrono::hours(2);
    log->Close();
    const std::regex closing(
        "T\t Closed logging, log file was open for 02h:00m:0\\ds\\.\\d{3}ms\r\n");
    EXPECT_EQ(text().substr(0, replaced.size()), replaced);
    EXPECT_TRUE(std::regex_match(text().substr(replaced.size()), closing)) << text();
    for (const wxString& place : {toWx(folder.path() / "none" / "x.log"), wxString("/dev/full")}) {
        log->Open(place);
        log->Add("lost, quietly");
        log->Close();
    }
}

// --- Colours -------------------------------------------------------------------------------------

TEST(VpcColorTools, RampsAtTheEndsTheMiddleAndBeyond) {
    const struct {
        VpcColorScheme scheme;
        double value;
        std::array<double, 3> rgb;
    } cases[] = {{VPC_ColorScheme_Spectrum, 10, {0, 0, 127.5}},
                 {VPC_ColorScheme_Spectrum, 30, {131.484375, 0, 0}},
                 {VPC_ColorScheme_Spectrum, 20, {125.5078125, 255, 129.4921875}},
                 {VPC_ColorScheme_Spectrum, 99, {0, 0, 0}},
                 {VPC_ColorScheme_Earth, 10, {195, 95, 0}},
                 {VPC_ColorScheme_Earth, 30, {255, 255, 0}},
                 {VPC_ColorScheme_Hydro, 20, {0, 95.5, 163}},
                 {VPC_ColorScheme_Hydro, 30, {0, 191, 288}},
                 {VPC_ColorScheme_Gray, 50, {510, 510, 510}},
                 {VPC_ColorScheme_Reds, 10, {38, 0, 0}},
                 {VPC_ColorScheme_Greens, 20, {0, 146.5, 0}},
                 {VPC_ColorScheme_Blues, -10, {0, 0, -179}},
                 {VPC_ColorScheme_ScanColors, 20, {1, 2, 3}},
                 {static_cast<VpcColorScheme>(-1), 20, {1, 2, 3}}};
    for (const auto& c : cases) {
        std::array rgb{1.0, 2.0, 3.0};
        VpcColorTools::ApplyColorScheme(c.value, 10, 30, c.scheme, rgb[0], rgb[1], rgb[2]);
        EXPECT_EQ(rgb, c.rgb) << c.scheme << ' ' << c.value;
    }
    double red = 1, green = 2, blue = 3;
    VpcColorTools::ApplyColorSchemeJet(5, 5, 5, red, green, blue);
    EXPECT_EQ(red + green + blue, 0) << "an empty range: NaN becomes 0";
    VpcColorTools::ApplyColorSchemeGray(5, 5, 5, red, green, blue);
    EXPECT_TRUE(std::isnan(red));
}

}  // namespace
