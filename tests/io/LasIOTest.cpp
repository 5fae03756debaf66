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
    std::filesystem::path write(const std::string& bytes, const std::string& name = "a.las") {
        writeBytes(folder.path() / name, bytes);
        return folder.path() / name;
    }
    TempFolder folder;
    LasIO reader{4};
};

TEST_F(LasIOTest, ReadsEveryFormatAndVersion) {
    reader.scanIndex = 3;
    for (int version = 0; version <= 4; ++version) {
        for (int format = 0; format <= 10; ++format) {
            SCOPED_TRACE(testing::Message() << "version " << version << " format " << format);
            LasBuilder file;
            file.versionMinor = version;
            file.format = format;
            file.recordLength = LasBuilder::lengthOfFormat(format) + format % 3;
            file.offset = {10, 20, 30};
            file.points = somePoints(9);
            const auto [opened, points, batches] = readAll(reader, write(file.bytes()));
            ASSERT_TRUE(opened);
            EXPECT_EQ(batches, (std::vector<unsigned long long>{4, 4, 1}));
            ASSERT_EQ(points.size(), 9u);
            const bool hasColour = LasBuilder::colourOffset(format) != 0;
            EXPECT_EQ(describe(points[0]), hasColour
                                               ? "10 20 30.5 / 300 20 0 / 1000 / 3 / 1"
                                               : "10 20 30.5 / 1000 1000 1000 / 1000 / 3 / 1");
            EXPECT_EQ(describe(points[8]), hasColour
                                               ? "18 12 30.5 / 308 20 8 / 1008 / 3 / 1"
                                               : "18 12 30.5 / 1008 1008 1008 / 1008 / 3 / 1");
            EXPECT_EQ(extentOf(reader), "10 12 30.5 - 18 20 30.5");
            EXPECT_EQ(reader.maxRed, hasColour ? 308 : 1008);
            EXPECT_EQ(reader.maxIntensity, 1008);
            EXPECT_EQ(reader.numberOfPoints, 9u);
            EXPECT_EQ(reader.numberOfBatches, 3u);
            EXPECT_EQ(reader.pointsRead, 8u);  // the first point is not counted
            EXPECT_TRUE(reader.errorMessage.empty());
        }
    }
}

TEST_F(LasIOTest, KeepsTheHeader) {
    LasBuilder file;
    file.versionMinor = 4;
    file.format = 7;
    file.legacyCount = 77;
    file.points = somePoints(5);
    ASSERT_TRUE(reader.readHeader(toWx(write(file.bytes())), true));
    EXPECT_FALSE(reader.stream.IsStreamOpen());
    EXPECT_EQ(reader.numberOfPoints, 5u);
    EXPECT_EQ(reader.systemIdentifier, "test system");
    EXPECT_EQ(reader.generatingSoftware, "software");
    EXPECT_EQ(joined(reader.versionMajor, reader.versionMinor, reader.fileCreationDayOfYear,
                     reader.fileCreationYear, reader.headerSize, reader.offsetToPointData,
                     reader.numberOfVariableLengthRecords, reader.pointDataFormat,
                     reader.pointDataRecordLength, reader.colorOffset),
              "1 4 123 2024 375 429 1 7 36 30");
    EXPECT_EQ(joined(reader.headerMin.x, reader.headerMin.z, reader.headerMax.x, reader.headerMax.z,
                     reader.scale.y),
              "-1e+06 -1e+06 1e+06 1e+06 0.01");
    ASSERT_TRUE(reader.readHeader(toWx(folder.path() / "a.las"), false));
    EXPECT_TRUE(reader.stream.IsStreamOpen());
}

TEST_F(LasIOTest, IntensityIsSignedAndGreyIsNot) {
    LasBuilder file;
    file.format = 1;
    file.points = {{0, 0, 0, 40000, 0, 0, 0}};
    EXPECT_EQ(describe(readAll(reader, write(file.bytes())).points),
              std::vector<std::string>{"0 0 0 / 40000 40000 40000 / -25536 / -1 / 1"});
    EXPECT_EQ(reader.maxIntensity, 0);
}

TEST_F(LasIOTest, RefusesBadHeadersWithTheReason) {
    LasBuilder major, minor, format, length, unsound;
    major.versionMajor = 2;
    minor.versionMinor = 5;
    format.format = 11;
    length.format = 7;
    length.recordLength = 34;
    unsound.versionMinor = 4;
    struct Case {
        std::string bytes;
        wxString message;
    };
    const Case cases[] = {
        {"", "\n input file is not a las file!"},
        {"LAS", "\n input file is not a las file!"},
        {std::string(500, 'x'), "\n input file is not a las file!"},
        {major.bytes(), "ERROR: invalid las major version number 2"},
        {minor.bytes(), "ERROR: invalid las minor version number 5"},
        {format.bytes(), "ERROR: invalid point format 11"},
        {length.bytes(),
         "\n => in las file, point data record format (7) and record length (34) are "
         "conflicting: expected length is 36"},
        {"LASF", "ERROR: las header is cut short, the file has only 4 bytes"},
        {LasBuilder{}.bytes().substr(0, 100),
         "ERROR: las header is cut short, the file has only 100 bytes"},
        {LasBuilder{}.bytes().substr(0, 226),
         "ERROR: las header is cut short, the file has only 226 bytes"},
        {unsound.bytes().substr(0, 254),
         "ERROR: las header is cut short, the file has only 254 bytes"}};
    for (const Case& c : cases) {
        EXPECT_EQ(reader.initializeRead(toWx(write(c.bytes))), nullptr) << c.message;
        EXPECT_EQ(reader.errorMessage, c.message);
        EXPECT_FALSE(reader.stream.IsStreamOpen());
    }
    EXPECT_EQ(reader.initializeRead(toWx(folder.path() / "none.las")), nullptr);
    EXPECT_TRUE(reader.errorMessage.Contains("none.las")) << reader.errorMessage;

    // The failures leave the reader fit for a sound file.
    LasBuilder sound;
    sound.points = somePoints(2);
    EXPECT_EQ(readAll(reader, write(sound.bytes())).points.size(), 2u);
    EXPECT_TRUE(reader.errorMessage.empty());
}

TEST_F(LasIOTest, FieldsBeyondAShortRecordAreZero) {
    struct Case {
        int length;
        const char* point;
    };
    // A record without any x would leave x at the offset, and so on.
    const Case cases[] = {{34, "1 2 3 / 7 8 9 / 6 / -1 / 1"}, {33, "1 2 3 / 7 8 0 / 6 / -1 / 1"},
                          {30, "1 2 3 / 7 0 0 / 6 / -1 / 1"}, {14, "1 2 3 / 0 0 0 / 6 / -1 / 1"},
                          {12, "1 2 3 / 0 0 0 / 0 / -1 / 1"}, {8, "1 2 0.5 / 0 0 0 / 0 / -1 / 1"}};
    for (const Case& c : cases) {
        LasBuilder file;
        file.recordLength = c.length;
        file.offset = {0, 0, 0.5};
        file.points.assign(6, {100, 200, 250, 6, 7, 8, 9});
        const auto delivered = readAll(reader, write(file.bytes()));
        EXPECT_EQ(describe(delivered.points), std::vector<std::string>(6, c.point)) << c.length;
    }
}

TEST_F(LasIOTest, DeliversTheWholeRecordsOfAShortFile) {
    LasBuilder file;
    file.points = somePoints(10);
    const std::string bytes = file.bytes();
    const std::size_t start = bytes.size() - 10 * 34;
    for (const std::size_t held : {0, 1, 3, 4, 5, 8, 9}) {
        SCOPED_TRACE(held);
        const auto delivered = readAll(reader, write(bytes.substr(0, start + held * 34 + 33)));
        EXPECT_EQ(delivered.points.size(), held);
        EXPECT_EQ(reader.pointsRemaining, 0u);
        EXPECT_EQ(reader.missingRecords, 10 - held);
        EXPECT_TRUE(reader.errorMessage.Contains(wxString::Format("%zu of the 10 ", 10 - held)))
            << reader.errorMessage;
        EXPECT_TRUE(reader.errorMessage.Contains("a.las"));
    }
    readAll(reader, write(bytes));
    EXPECT_EQ(reader.missingRecords, 0u);
    EXPECT_TRUE(reader.errorMessage.empty());
}

TEST_F(LasIOTest, SurvivesClaimsThatCannotBeTrue) {
    LasBuilder file;
    file.versionMinor = 4;
    file.points = somePoints(6);
    file.count = 1ULL << 60;
    EXPECT_EQ(readAll(reader, write(file.bytes())).points.size(), 6u);
    EXPECT_EQ(reader.missingRecords, (1ULL << 60) - 6);

    file.count = std::numeric_limits<std::uint64_t>::max();
    file.recordLength = 65535;
    LasIO large(100000);  // a batch of it would have 6 GB
    EXPECT_EQ(readAll(large, write(file.bytes())).points.size(), 6u);
    EXPECT_LE(large.stream.bufferSize, file.bytes().size());

    file.recordLength = 0;
    const auto none = readAll(reader, write(file.bytes()));
    EXPECT_TRUE(none.opened);
    EXPECT_TRUE(none.points.empty());
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
    reader.initializeRead(toWx(write(file.bytes())));
    reader.pointBuffer[0].x = 5;
    EXPECT_EQ(reader.nextPointBatch(), 0u);
    EXPECT_EQ(describe(reader.pointBuffer[0]), "0 0 0.5 / 300 20 0 / 1000 / -1 / 1");
    EXPECT_EQ(reader.pointsRead, 0u);
    EXPECT_TRUE(reader.errorMessage.empty());
    reader.closeRead();
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

TEST_F(LasIOTest, MaximaAreThoseOfTheLastFile) {
    LasBuilder file;
    file.points = somePoints(3);
    readAll(reader, write(file.bytes()));
    EXPECT_EQ(reader.maxRed, 302);
    file.points = {{0, 0, 0, 4, 1, 2, 3}};
    readAll(reader, write(file.bytes(), "b.las"));
    EXPECT_EQ(joined(reader.maxRed, reader.maxGreen, reader.maxBlue, reader.maxIntensity),
              "1 2 3 4");
    EXPECT_EQ(extentOf(reader), "0 0 0 - 0 0 0");
}

/// The loop over a block and the single-record operation give the same points and statistics.
TEST_F(LasIOTest, ReadPointGivesWhatTheBatchHolds) {
    LasBuilder file;
    file.points = somePoints(4);
    file.offset = {1.0 / 3, -2e5, 1e-3};
    reader.initializeRead(toWx(write(file.bytes())));
    ASSERT_EQ(reader.nextPointBatch(), 4u);
    LasIO single(4);
    single.initializeRead(toWx(write(file.bytes())));
    single.nextPointBatch();
    single.InitializeExtent(reader.pointBuffer[0].x, reader.pointBuffer[0].y,
                            reader.pointBuffer[0].z);
    single.maxRed = 0;
    for (unsigned long long i = 0; i < 4; ++i) {
        VpcPoint3D point;
        single.ReadPoint(i, point);
        EXPECT_EQ(point.x, reader.pointBuffer[i].x);
        EXPECT_EQ(describe(point), describe(reader.pointBuffer[i]));
    }
    EXPECT_EQ(extentOf(single), extentOf(reader));
    EXPECT_EQ(single.maxRed, reader.maxRed);
    // Beyond the block every raw field is 0.
    VpcPoint3D beyond;
    single.ReadPoint(1ULL << 40, beyond);
    EXPECT_EQ(beyond.x, 1.0 / 3);
    EXPECT_EQ(beyond.red, 0);
    // So it is before the first block, however much was read for the header.
    single.initializeRead(toWx(write(file.bytes())));
    single.ReadPoint(10, beyond);
    EXPECT_EQ(beyond.x, 1.0 / 3);
}

}  // namespace
