#include "io/LasIO.h"

#include <limits>

#include <gtest/gtest.h>

#include "support/LasBuilder.h"
#include "support/ReaderTools.h"

using namespace vpc::test;

namespace {

std::vector<LasBuilder::Point> somePoints(int count) {
    std::vector<LasBuilder::Point> points;
    for (int i = 0; i < count; ++i) {
        const auto step = static_cast<std::uint16_t>(i);
        points.push_back({100 * i, -100 * i, 50, static_cast<std::uint16_t>(1000 + step),
                          static_cast<std::uint16_t>(300 + step), 20, step});
    }
    return points;
}

class LasIOTest : public testing::Test {
protected:
    std::filesystem::path write(const std::string& bytes) {
        writeBytes(folder.path() / "a.las", bytes);
        return folder.path() / "a.las";
    }
    TempFolder folder;
    LasIO reader{4};
};

TEST_F(LasIOTest, KeepsTheHeaderAndReadsBatches) {
    LasBuilder file;
    file.versionMinor = 4;
    file.format = 7;
    file.legacyCount = 77;
    file.offset = {10, 20, 30};
    file.points = somePoints(9);
    reader.scanIndex = 3;
    const auto [opened, points, batches] = readAll(reader, write(file.bytes()));
    EXPECT_EQ(batches, (std::vector<unsigned long long>{4, 4, 1}));
    EXPECT_EQ(describe(points).back(), "18 12 30.5 / 308 20 8 / 1008 / 3 / 1");
    EXPECT_EQ(extentOf(reader), "10 12 30.5 - 18 20 30.5");
    EXPECT_EQ(joined(reader.maxRed, reader.maxIntensity, reader.numberOfPoints,
                     reader.numberOfBatches, reader.pointsRead),
              "308 1008 9 3 8")
        << "the first point is not counted as read";
}

TEST_F(LasIOTest, RefusesHeadersThatAreCutShortAndGoesOnToTheNextFile) {
    LasBuilder sound;
    sound.versionMinor = 4;
    sound.points = somePoints(2);
    const std::string bytes = sound.bytes();
    for (const std::size_t size : {4U, 24U, 226U, 254U}) {
        EXPECT_EQ(reader.initializeRead(toWx(write(bytes.substr(0, size)))), nullptr);
        EXPECT_EQ(
            reader.errorMessage,
            wxString::Format("ERROR: las header is cut short, the file has only %zu bytes", size));
        EXPECT_FALSE(reader.stream.IsStreamOpen());
    }
    EXPECT_EQ(readAll(reader, write(bytes)).points.size(), 2u);
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
        LasBuilder file;
        file.format = format;
        file.recordLength = length;
        file.offset = {0, 0, 0.5};
        file.points.assign(6, {100, 200, 250, 6, 7, 8, 0x15A});
        EXPECT_EQ(describe(readAll(reader, write(file.bytes())).points),
                  std::vector<std::string>(6, point))
            << format << " " << length;
    }
}

TEST_F(LasIOTest, SurvivesClaimsThatCannotBeTrue) {
    LasBuilder file;
    file.versionMinor = 4;
    file.points = somePoints(6);
    file.count = std::numeric_limits<std::uint64_t>::max();
    file.recordLength = 65535;
    LasIO large(100000);  // a batch of it would have 6 GB
    EXPECT_EQ(readAll(large, write(file.bytes())).points.size(), 6u);
    EXPECT_LE(large.stream.bufferSize, file.bytes().size());

    file.recordLength = 0;
    EXPECT_TRUE(readAll(reader, write(file.bytes())).points.empty());
    EXPECT_EQ(reader.missingRecords, std::numeric_limits<std::uint64_t>::max());

    // The points are said to start behind the end of the file.
    std::string beyond = LasBuilder{}.bytes();
    beyond.replace(96, 4, "\xff\xff\xff\xff");
    beyond.replace(107, 4, std::string("\x05\0\0\0", 4));
    EXPECT_TRUE(readAll(reader, write(beyond)).points.empty());
    EXPECT_EQ(reader.missingRecords, 5u);
}

TEST_F(LasIOTest, AFileWithoutPointsStillFillsTheFirstElement) {
    LasBuilder file;
    file.points = somePoints(3);
    file.legacyCount = 0;
    file.offset[0] = std::numeric_limits<double>::infinity();
    reader.initializeRead(toWx(write(file.bytes())));
    reader.pointBuffer[0].x = 5;
    EXPECT_EQ(reader.nextPointBatch(), 0u);
    EXPECT_EQ(describe(reader.pointBuffer[0]), "inf 0 0.5 / 300 20 0 / 1000 / -1 / 1");
    EXPECT_EQ(reader.pointsRead + reader.nonFinitePoints, 0u);
    // Beyond the block every raw field is 0.
    reader.ReadPoint(1ULL << 40, reader.pointBuffer[0]);
    EXPECT_EQ(describe(reader.pointBuffer[0]), "inf 0 0 / 0 0 0 / 0 / -1 / 1");
}

TEST_F(LasIOTest, CoordinatesThatAreNotFiniteAreCountedAndKeptOut) {
    LasBuilder file;
    file.points = somePoints(6);
    file.scale = {std::numeric_limits<double>::max(), 1, 1};
    EXPECT_EQ(readAll(reader, write(file.bytes())).points.size(), 6u);
    EXPECT_EQ(reader.nonFinitePoints, 5u);  // only a raw 0 gives a finite coordinate
    EXPECT_EQ(extentOf(reader), "0 0 50 - 0 0 50");
    EXPECT_EQ(reader.maxRed, 300);

    file.offset[1] = std::numeric_limits<double>::quiet_NaN();
    readAll(reader, write(file.bytes()));
    EXPECT_EQ(reader.nonFinitePoints, 6u);
    EXPECT_EQ(extentOf(reader), emptyExtent);
}

}  // namespace
