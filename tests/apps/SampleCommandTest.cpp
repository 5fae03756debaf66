#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "io/FileIoFactory.h"
#include "io/LasIO.h"
#include "support/ProgramRun.h"

namespace {

using testing::HasSubstr;
using vpc::test::readBytes;
using vpc::test::TempFolder;
using vpc::test::toWx;

std::vector<std::string> sampleArguments(const std::string& file, const std::string& points,
                                         const std::string& seed, const std::string& format) {
    std::vector<std::string> arguments = {"sample", file, "--points", points, "--seed", seed};
    if (!format.empty()) arguments.insert(arguments.end(), {"--format", format});
    return arguments;
}

struct SampleCase {
    std::string extension;
    std::string format;
};

class SampleCommandTest : public testing::TestWithParam<SampleCase> {
protected:
    std::string sample(const std::string& name, const std::string& points,
                       const std::string& seed) {
        const std::string file = folder.file(name + "." + GetParam().extension);
        const auto result = vpc::test::runProgram(
            sampleArguments(file, points, seed, GetParam().format), folder.path());
        EXPECT_EQ(result.status, 0) << result.err;
        return file;
    }

    TempFolder folder;
};

TEST_P(SampleCommandTest, TheSameSeedGivesTheSameBytes) {
    const std::string first = readBytes(sample("a", "5000", "7"));
    EXPECT_GT(first.size(), 5000U * 20);
    EXPECT_EQ(readBytes(sample("b", "5000", "7")), first);
    EXPECT_NE(readBytes(sample("c", "5000", "8")), first);
}

TEST_P(SampleCommandTest, HoldsThePointsAskedForAtTenASquareMetre) {
    for (const unsigned long long points : {1ULL, 7ULL, 40000ULL}) {
        const wxString file = toWx(sample("a", std::to_string(points), "3"));
        VpcBoundingBoxAxisAligned box;
        ScanSummary summary;
        wxString message;
        ASSERT_TRUE(FileIoFactory::DetermineMultipleBoundingBox(
            {file}, FileIoFactory::GetDataFormat(file), box, message, &summary));
        EXPECT_EQ(summary.points, points);
        EXPECT_EQ(summary.pointsWithoutValues, 0U);
        EXPECT_EQ(message, "");
        if (points < 1000) continue;
        EXPECT_NEAR(box.sideX * box.sideY, 4000 * 1.2, 800);
        EXPECT_GT(box.sideZ, 5.0) << "there are trees and houses";
        EXPECT_LT(box.sideZ, 90.0);
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, SampleCommandTest,
                         testing::Values(SampleCase{"las", ""}, SampleCase{"las", "7"},
                                         SampleCase{"pts", ""}, SampleCase{"ptx", ""}),
                         [](const auto& test) { return test.param.extension + test.param.format; });

TEST(SampleCommand, LasHeadersSayWhatThePointsAre) {
    const TempFolder folder;
    for (const std::string format : {"3", "7"}) {
        const std::string file = folder.file("f" + format + ".las");
        ASSERT_EQ(vpc::test::runProgram(sampleArguments(file, "20000", "1", format), folder.path())
                      .status,
                  0);
        LasIO reader(100000);
        ASSERT_NE(reader.initializeRead(toWx(file)), nullptr) << reader.errorMessage;
        EXPECT_EQ(reader.versionMinor, format == "3" ? 2 : 4);
        EXPECT_EQ(reader.pointDataFormat, std::stoi(format));
        EXPECT_EQ(reader.numberOfPoints, 20000U);
        EXPECT_EQ(reader.nextPointBatch(), 20000U);
        EXPECT_GT(reader.maxRed, 256) << "colours are sixteen bits deep";
        double lowest = 1e9;
        for (std::size_t i = 0; i < 20000; ++i)
            lowest = std::min(lowest, reader.pointBuffer[i].intensity);
        EXPECT_GE(lowest, 0.0);
        const std::string bytes = readBytes(file);
        double maxX = 0;
        std::memcpy(&maxX, bytes.data() + 179, sizeof maxX);
        EXPECT_DOUBLE_EQ(maxX, reader.extentMax.x);
        reader.closeRead();
    }
}

TEST(SampleCommand, PtxHasEmptyCellsAndATransform) {
    const TempFolder folder;
    const std::string file = folder.file("a.ptx");
    ASSERT_EQ(vpc::test::runProgram(sampleArguments(file, "5000", "1", ""), folder.path()).status,
              0);
    const std::string text = readBytes(file);
    EXPECT_THAT(text, HasSubstr("\n0 0 0 0.5 0 0 0\n"));
    EXPECT_THAT(text, HasSubstr("\n0.800 0.600 0 0\n-0.600 0.800 0 0\n0 0 1 0\n458500.000 "));
    const auto lines = std::count(text.begin(), text.end(), '\n');
    EXPECT_EQ(lines, 10 + std::stoll(text) * std::stoll(text.substr(text.find('\n') + 1)));
}

TEST(SampleCommand, AFullDiskOrASignalLeavesNothing) {
    const TempFolder folder;
    vpc::test::ProgramRun limited(sampleArguments("a.las", "100000", "1", ""), folder.path(),
                                  1000000);
    const auto result = limited.wait();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("'a.las' cannot be written"));
    EXPECT_TRUE(folder.names().empty());

    vpc::test::ProgramRun endless(sampleArguments("a.pts", "2000000000", "1", ""), folder.path());
    ASSERT_TRUE(vpc::test::ProgramRun::waitUntil([&] { return !folder.names().empty(); }));
    endless.send(SIGINT);
    EXPECT_EQ(endless.wait().status, 130);
    EXPECT_TRUE(folder.names().empty());
}

}  // namespace
