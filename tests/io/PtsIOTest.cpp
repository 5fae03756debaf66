#include "io/PtsIO.h"

#include <gtest/gtest.h>

#include "support/ReaderTools.h"

using namespace vpc::test;

namespace {

using Lines = std::vector<std::string>;
using Batches = std::vector<unsigned long long>;

/// A point as it is described that has coordinates only.
std::string plain(const std::string& coordinates) {
    return coordinates + " / 0 0 0 / 0 / -1 / 1";
}

class PtsIOTest : public testing::Test {
protected:
    Delivered read(const std::string& text) {
        writeBytes(file, text);
        return readAll(reader, file);
    }
    TempFolder folder;
    std::filesystem::path file = folder.path() / "a.pts";
    PtsIO reader{3};
};

TEST_F(PtsIOTest, ReadsOneStreamOfNumbersInEveryColumnLayout) {
    const std::pair<std::string, Lines> cases[] = {
        {"1\n1\t2\t3\t-12.5", {"1 2 3 / 0 0 0 / -12.5 / -1 / 1"}},
        {"2\r\n0 0 0 10 20 30\r\n1 1 1 40.9 50 60\r\n",
         {"0 0 0 / 10 20 30 / 20 / -1 / 1", "1 1 1 / 40 50 60 / 50.3 / -1 / 1"}},
        {"1\n0 0 0 100 300 -1 65536\n", {"0 0 0 / 300 65535 0 / 100 / -1 / 1"}},
        {"2\n1 2 3\n4\n5 6\n", {plain("1 2 3"), plain("4 5 6")}},
        {"1\n1e1 0x10 -inf 4", {"10 16 -inf / 0 0 0 / 4 / -1 / 1"}}};
    for (const auto& [text, points] : cases) EXPECT_EQ(describe(read(text).points), points) << text;
}

TEST_F(PtsIOTest, OtherColumnCountsDeliverWhatTheBufferHolds) {
    read("1\n7 7 7\n");
    const auto delivered = read("5\n.1 2 3 4 5\n1 2 3 4 5\n");
    EXPECT_EQ(delivered.batches, (Batches{3, 2}));
    EXPECT_EQ(describe(delivered.points[0]), plain("7 7 7"));
    EXPECT_EQ(extentOf(reader), "0 0 0 - 7 7 7");  // of what was delivered
    EXPECT_EQ(reader.pointsWithoutValues, 5u);
    for (const char* text : {"1\n.1 2\n", "1\n.1 2 3 4 5 6 7 8\n", "1\n", "1"}) {
        EXPECT_EQ(read(text).batches, Batches{1}) << text;
        EXPECT_EQ(extentOf(reader), "7 7 7 - 7 7 7") << text;
    }
}

TEST_F(PtsIOTest, ReadsBlocksAndBatchesInTurn) {
    const auto delivered = read(
        "2\n1 1 1\n2 2 2\n"
        "4\n3 3 -3\n4 4 4\n5 5 5\n6 6 6\n"
        "1\n7 7 7\nend");
    EXPECT_EQ(delivered.batches, (Batches{2, 3, 1, 1}));
    EXPECT_EQ(extentOf(reader), "1 1 -3 - 7 7 7");
    EXPECT_EQ(reader.pointsWithoutValues, 0u);
}

TEST_F(PtsIOTest, MissingAndMalformedValuesAreZeroAndCounted) {
    const struct {
        std::string text;
        Lines points;
        unsigned long long withoutValues;
    } cases[] = {
        // The text ends in the middle of the second point.
        {"4\n1 2 3\n4 5", {plain("1 2 3"), plain("4 5 0"), plain("0 0 0"), plain("0 0 0")}, 2},
        // The next point goes on where the scanner stopped, which is here for good.
        {"3\n1 2 3\n4 x 6\n7 8 9\n", {plain("1 2 3"), plain("4 0 0"), plain("0 0 0")}, 1},
        {"2\n1 2 3,5\n4 5 6\n", {plain("1 2 3"), plain("0 0 0")}, 1},
        {"no count\n1 2 3\n", {plain("0 0 0")}, 1},
        {"0\n1 2 3\n", {plain("1 2 3")}, 0},
        // The digits before the point are the count; line 1 has three values.
        {"1.5 3.25\n4 1 6\n", {plain("0.5 3.25 4"), plain("6 0 0")}, 0}};
    for (const auto& c : cases) {
        const auto delivered = read(c.text);
        EXPECT_EQ(describe(delivered.points), c.points) << c.text;
        EXPECT_EQ(reader.pointsWithoutValues, c.withoutValues) << c.text;
    }
    EXPECT_EQ(read("").batches, Batches{1});
}

TEST_F(PtsIOTest, NotesACountThatCannotBeTrue) {
    for (const char* count : {"100", "18446744073709551615", "99999999999999999999999", "-5"}) {
        writeBytes(file, std::string(count) + "\n1 2 3\n");
        reader.initializeRead(toWx(file));
        EXPECT_NE(reader.impossibleCount, 0u) << count;
        EXPECT_EQ(reader.nextPointBatch(), 3u) << count;
        EXPECT_EQ(describe(reader.pointBuffer[0]), plain("1 2 3"));
        reader.closeRead();
    }
    read("8\n1 2 3\n");
    EXPECT_EQ(reader.impossibleCount, 0u);  // as many as the file has bytes
    EXPECT_EQ(reader.pointsWithoutValues, 7u);
}

TEST_F(PtsIOTest, PointsThatAreNotFiniteStayOutOfTheExtent) {
    read("4\nnan 0 0 5 900 1 1\n1 2 3 5 10 1 1\n1 inf 3 5 800 1 1\n4 5 6 5 20 1 1\n");
    EXPECT_EQ(joined(reader.nonFinitePoints, reader.maxRed), "2 20");
    EXPECT_EQ(extentOf(reader), "1 2 3 - 4 5 6");
}

TEST_F(PtsIOTest, AFileThatCannotBeOpenedDeliversNothing) {
    for (const char* name : {"none.pts", "."}) {
        const auto delivered = readAll(reader, folder.path() / name);
        EXPECT_TRUE(delivered.opened);
        EXPECT_EQ(delivered.batches, Batches{0});
    }
    EXPECT_FALSE(reader.readHeader(toWx(file), true));
}

TEST_F(PtsIOTest, ReadsFilesWithAnyName) {
    file = folder.path() /
           std::filesystem::u8path("Gel\xc3\xa4nde \xe6\xb8\xac\xe9\x87\x8f \xf0\x9f\x97\xba.pts");
    EXPECT_EQ(read("1\n1 2 3\n").points.size(), 1u);
    EXPECT_EQ(reader.pointsWithoutValues, 0u);
    PtsIO::Write({VpcPoint3D(1, 2, 3)}, toWx(file), false);
    EXPECT_EQ(readBytes(file), "1\n1 2 3 0 0 0\n");
}

TEST_F(PtsIOTest, WritesColoursOrElevation) {
    const VpcPoint3D low(1.5, -1e-7, 0, 1, 2, 65535, 99);
    const VpcPoint3D high(123456.7891, 1e20, 10, 4, 5, 6);
    PtsIO::Write({low, high}, toWx(file), false);
    EXPECT_EQ(readBytes(file), "2\n1.5 -1e-07 0 1 2 65535\n123456.789 1e+20 10 4 5 6\n");
    PtsIO::Write({low, high}, toWx(file), true);
    EXPECT_EQ(readBytes(file),
              "2\n1.5 -1e-07 0 0 0 0 127.5\n123456.789 1e+20 10 255 131.484375 0 0\n");
    PtsIO::Write({}, toWx(file), true);
    EXPECT_EQ(readBytes(file), "0\n");
    PtsIO::Write({low, low}, toWx(file), true);
    EXPECT_NE(readBytes(file).find("nan"), std::string::npos);
    PtsIO::Write({low}, toWx(folder.path() / "none" / "a.pts"), false);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "none"));
}

/// More text than the writer and the scanner hold at once.
TEST_F(PtsIOTest, WhatIsWrittenIsReadBack) {
    std::vector<VpcPoint3D> points;
    for (int i = 0; i < 60000; ++i)
        points.emplace_back(i * 0.25, -i, 1e6 + i * 0.5, static_cast<std::uint16_t>(i), 7, 9);
    PtsIO::Write(points, toWx(file), false);
    PtsIO whole(100000);
    const auto delivered = readAll(whole, file);
    ASSERT_EQ(delivered.points.size(), points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        points[i].intensity = (points[i].red + 16) / 3.0;
        points[i].scannerDistance = 1;
        ASSERT_EQ(describe(delivered.points[i]), describe(points[i])) << i;
    }
}

}  // namespace
