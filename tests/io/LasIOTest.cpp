#include "io/LasIO.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "support/LasBuilder.h"
#include "support/ReaderTools.h"

using namespace vpc::test;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// So many points, of which the one in the middle is the greatest in everything.
std::vector<LasBuilder::Point> somePoints(int count) {
    std::vector<LasBuilder::Point> points;
    for (int i = 0; i < count; ++i) {
        const int step = count - std::abs(count - 1 - 2 * i);
        const auto value = static_cast<std::uint16_t>(step);
        points.push_back({100 * step, 200 * step, 50, static_cast<std::uint16_t>(1000 + value),
                          static_cast<std::uint16_t>(300 + value), 20, value});
    }
    return points;
}

class LasIOTest : public testing::Test {
protected:
    Delivered read(LasIO& by, const std::string& bytes) {
        writeBytes(path, bytes);
        return readAll(by, path);
    }
    Delivered read(const LasBuilder& scan) { return read(reader, scan.bytes()); }
    TempFolder folder;
    std::filesystem::path path = folder.path() / "a.las";
    LasBuilder file;
    LasIO reader{4};
};

TEST_F(LasIOTest, KeepsTheHeaderAndReadsBatches) {
    file.versionMinor = 4;
    file.format = 7;
    file.legacyCount = 77;
    file.offset = {10, 20, 30};
    file.points = somePoints(9);
    reader.scanIndex = 3;
    const auto [opened, points, batches] = read(file);
    EXPECT_EQ(batches, (std::vector<unsigned long long>{4, 4, 1}));
    EXPECT_EQ(describe(points)[3], "17 34 30.5 / 307 20 7 / 1007 / 3 / 1");
    EXPECT_EQ(extentOf(reader), "11 22 30.5 - 19 38 30.5");
    EXPECT_EQ(joined(reader.maxRed, reader.maxGreen, reader.maxBlue, reader.maxIntensity),
              "309 20 9 1009");
    EXPECT_EQ(joined(reader.numberOfPoints, reader.numberOfBatches, reader.pointsRead), "9 3 8")
        << "the first point is not counted as read";
    EXPECT_EQ(joined(reader.fileCreationDayOfYear, reader.fileCreationYear, reader.headerSize,
                     reader.numberOfVariableLengthRecords, reader.systemIdentifier,
                     reader.generatingSoftware),
              "123 2024 375 1 test system software");
    const auto &low = reader.headerMin, &high = reader.headerMax;
    EXPECT_EQ(joined(low.x + 1e6, low.y + 1e6, low.z + 1e6), "0 -1 -2");
    EXPECT_EQ(joined(high.x - 1e6, high.y - 1e6, high.z - 1e6), "0 1 2");
    file.points = somePoints(2);
    read(file);
    EXPECT_EQ(joined(reader.maxRed, reader.maxBlue, reader.maxIntensity), "301 1 1001")
        << "those of the last file";
    EXPECT_TRUE(reader.readHeader(toWx(path), true) && !reader.stream.IsStreamOpen());
}

TEST_F(LasIOTest, RefusesHeadersThatAreCutShortAndGoesOnToTheNextFile) {
    file.versionMinor = 4;
    file.points = somePoints(2);
    for (const std::size_t size : {4U, 24U, 226U, 254U}) {
        EXPECT_FALSE(read(reader, file.bytes().substr(0, size)).opened);
        EXPECT_TRUE(reader.errorMessage.EndsWith(wxString::Format("only %zu bytes", size)));
        EXPECT_FALSE(reader.stream.IsStreamOpen());
    }
    EXPECT_EQ(read(file).points.size(), 2u);
    EXPECT_TRUE(reader.errorMessage.empty());
}

TEST_F(LasIOTest, FieldsBeyondAShortRecordAreZero) {
    // A record without any x would leave x at the offset, and so on.
    const std::tuple<int, int, const char*> cases[] = {
        {3, 34, "1 2 3 / 7 8 346 / 6 / -1 / 1"}, {3, 33, "1 2 3 / 7 8 0 / 6 / -1 / 1"},
        {3, 12, "1 2 3 / 0 0 0 / 0 / -1 / 1"},   {3, 8, "1 2 0.5 / 0 0 0 / 0 / -1 / 1"},
        {0, 14, "1 2 3 / 6 6 6 / 6 / -1 / 1"},   {0, 7, "1 0 0.5 / 0 0 0 / 0 / -1 / 1"},
        {6, 6, "1 0 0.5 / 0 0 0 / 0 / -1 / 1"},  {1, 3, "0 0 0.5 / 0 0 0 / 0 / -1 / 1"},
        {9, 2, "0 0 0.5 / 0 0 0 / 0 / -1 / 1"}};
    for (const auto& [format, length, point] : cases) {
        file.format = format;
        file.recordLength = length;
        file.offset = {0, 0, 0.5};
        file.points.assign(6, {100, 200, 250, 6, 7, 8, 0x15A});
        EXPECT_EQ(describe(read(file).points), std::vector<std::string>(6, point))
            << format << " " << length;
    }
}

TEST_F(LasIOTest, SurvivesClaimsThatCannotBeTrue) {
    constexpr auto most = std::numeric_limits<std::uint64_t>::max();
    file.versionMinor = 4;
    file.points = somePoints(6);
    file.count = 7;
    EXPECT_EQ(read(file).points.size(), 6u);
    EXPECT_EQ(reader.missingRecords, 1u);
    file.count = most;
    file.recordLength = 65535;
    LasIO large(100000);  // a batch of it would have 6 GB
    EXPECT_EQ(read(large, file.bytes()).points.size(), 6u);
    EXPECT_LE(large.stream.bufferSize, file.bytes().size());
    file.recordLength = 0;
    EXPECT_TRUE(read(file).points.empty());
    EXPECT_EQ(reader.missingRecords, most);
    // The points are said to start behind the end of the file.
    std::string beyond = LasBuilder{}.bytes();
    beyond.replace(96, 4, "\xff\xff\xff\xff");
    beyond.replace(107, 4, std::string("\x05\0\0\0", 4));
    EXPECT_TRUE(read(reader, beyond).points.empty());
    EXPECT_EQ(reader.missingRecords, 5u);
}

TEST_F(LasIOTest, AFileWithoutPointsStillFillsTheFirstElement) {
    file.points = somePoints(3);
    file.legacyCount = 0;
    file.offset[0] = infinity;
    writeBytes(path, file.bytes());
    reader.initializeRead(toWx(path));
    reader.pointBuffer[0].x = 5;
    EXPECT_EQ(reader.nextPointBatch(), 0u);
    EXPECT_EQ(describe(reader.pointBuffer[0]), "inf 2 0.5 / 301 20 1 / 1001 / -1 / 1");
    EXPECT_EQ(reader.pointsRead + reader.nonFinitePoints, 0u);
    // Beyond the block every raw field is 0.
    reader.ReadPoint(1ULL << 40, reader.pointBuffer[0]);
    EXPECT_EQ(describe(reader.pointBuffer[0]), "inf 0 0 / 0 0 0 / 0 / -1 / 1");
}

}  // namespace
