#include "io/PtxIO.h"

#include <gtest/gtest.h>

#include "support/ReaderTools.h"

using namespace vpc::test;

namespace {

using Lines = std::vector<std::string>;
using Batches = std::vector<unsigned long long>;

const std::string pose = "0 0 0\n1 0 0\n0 1 0\n0 0 1\n";
const std::string identity = "1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n";

std::string scan(const std::string& size, const std::string& lines,
                 const std::string& matrix = identity) {
    return size + "\n" + pose + matrix + lines;
}

/// A point line without and with colour as it is described.
const std::string pointLine = "1 2 3 4 5 6 7\n";
const std::string pointText = "1 2 3 / 5 6 7 / 4 / -1 / 1";

class PtxIOTest : public testing::Test {
protected:
    Delivered read(const std::string& text) {
        writeBytes(file, text);
        return readAll(reader, file);
    }
    TempFolder folder;
    std::filesystem::path file = folder.path() / "a.ptx";
    PtxIO reader{3};
};

TEST_F(PtxIOTest, ReadsAGridAndDropsItsEmptyCells) {
    const auto delivered = read(scan(
        "2\n2", "1 2 3 0.5 10 20 30\n0 0 0 0.5 99 99 99\r\n-1 5 0 0.25 300 1 2\n0 0 1 0 0 0 0\n"));
    EXPECT_EQ(delivered.batches, (Batches{2, 1}));
    EXPECT_EQ(describe(delivered.points),
              (Lines{"1 2 3 / 10 20 30 / 0.5 / -1 / 1", "-1 5 0 / 300 1 2 / 0.25 / -1 / 1",
                     "0 0 1 / 0 0 0 / 0 / -1 / 1"}));
    EXPECT_EQ(extentOf(reader), "-1 0 0 - 1 5 3");
    EXPECT_EQ(reader.maxRed, 300);
    EXPECT_EQ(reader.pointsWithoutValues, 0u);
    EXPECT_EQ(reader.nextPointBatch(), 1u);  // the last batch again, with nothing to do
}

TEST_F(PtxIOTest, TransformsEachScanByItsOwnMatrix) {
    const std::string moved = "1 0 0 0\n0 1 0 0\n0 0 1 0\n10 20 30 1\n";
    const std::string turned = "0 1 0 5\n-1 0 0 5\n0 0 2 5\n0 0 100 1\n";
    const auto delivered = read(scan("1 1", "3 4 0 1 7 8 9\n", moved) +
                                scan("2 1", "1 2 2 1 7 8 9\n0 0 0 0 0 0 0\n", turned) +
                                scan("1 1", "1 1 1 1 7 8 9\n") + "0 5");
    EXPECT_EQ(describe(delivered.points),
              (Lines{"13 24 30 / 7 8 9 / 1 / -1 / 5", "-2 1 104 / 7 8 9 / 1 / -1 / 3",
                     "1 1 1 / 7 8 9 / 1 / -1 / 1"}));
    EXPECT_EQ(delivered.batches, (Batches{1, 1, 1}));
    EXPECT_EQ(extentOf(reader), "-2 1 1 - 13 24 104");
}

TEST_F(PtxIOTest, ReadsScansWithoutColourColumns) {
    // Each scan by its own first line, blank lines before it and blanks around it or not.
    EXPECT_EQ(describe(read(scan("1 1", pointLine) + scan("1 1", "\r\n \t1 2 3 4 \r\n") +
                            scan("2 1", "1 2 3 4\n4 5 6 0.25\n") + scan("1 1", pointLine))
                           .points),
              (Lines{pointText, "1 2 3 / 0 0 0 / 4 / -1 / 1", "1 2 3 / 0 0 0 / 4 / -1 / 1",
                     "4 5 6 / 0 0 0 / 0.25 / -1 / 1", pointText}));
    // Any other number of values: one stream of seven for each point.
    EXPECT_EQ(describe(read(scan("2 1", "1 2 3\n4 5 6 7\n8 9 10\n11 12 13 14\n")).points),
              (Lines{pointText, "8 9 10 / 12 13 14 / 11 / -1 / 1"}));
}

TEST_F(PtxIOTest, MalformedValuesAreZeroAndMissingOnesAreCounted) {
    // Colours are integers: the scanner stops at the point of the first one for good.
    EXPECT_EQ(describe(read(scan("3 1", "1 2 3 4 5 6 7\n1 2 3 4 9.5 6 7\n8 8 8 8 8 8 8\n")).points),
              (Lines{"1 2 3 / 5 6 7 / 4 / -1 / 1", "1 2 3 / 9 0 0 / 4 / -1 / 1",
                     "0.5 6 7 / 8 8 8 / 8 / -1 / 1"}));
    EXPECT_EQ(read(scan("10 1", "1 2 3 4 5 6 7\n1 2")).points.size(), 2u);
    EXPECT_EQ(reader.pointsWithoutValues, 8u);
    EXPECT_EQ(read(scan("2 1", "x y z\n")).points.size(), 0u);
    EXPECT_EQ(reader.pointsWithoutValues, 2u);
    EXPECT_EQ(extentOf(reader), emptyExtent);
}

TEST_F(PtxIOTest, HeadersWithoutAGridEndTheReading) {
    const std::string first = scan("1 1", pointLine);
    for (const char* size :
         {"", "0 5", "5 0", "x", "4294967296 4294967296", "18446744073709551615 3"}) {
        const auto none = read(scan(size, pointLine));
        EXPECT_TRUE(none.points.empty()) << size;
        EXPECT_EQ(reader.impossibleCount, 0u) << size;
        EXPECT_EQ(read(first + scan(size, pointLine)).points.size(), 1u) << size;
    }
    EXPECT_EQ(read("1 1\n0 0 0").points.size(), 0u);
    // A count that cannot be true is noted.
    writeBytes(file, scan("1000 1000", pointLine));
    reader.initializeRead(toWx(file));
    EXPECT_EQ(reader.impossibleCount, 1000000u);
    EXPECT_EQ(reader.nextPointBatch(), 1u);
}

TEST_F(PtxIOTest, StatisticsAreOfTheFileAndOfFinitePoints) {
    read(scan("1 1", "-50 -50 -50 9 900 0 0\n"));
    // The first batch holds no point at all, the second starts with one that is not finite.
    const std::string empty = "0 0 0 0 0 0 0\n";
    const auto delivered = read(
        scan("6 1", empty + empty + empty + "1 nan 3 9 999 0 0\n4 5 6 1 2 3 4\n7 8 9 1 2 3 4\n"));
    EXPECT_EQ(delivered.batches, (Batches{0, 3}));
    EXPECT_EQ(extentOf(reader), "4 5 6 - 7 8 9");
    EXPECT_EQ(reader.nonFinitePoints, 1u);
    EXPECT_EQ(reader.maxRed, 900);
}

TEST_F(PtxIOTest, AFileThatCannotBeOpenedDeliversNothing) {
    read(scan("1 1", pointLine));
    const auto delivered = readAll(reader, folder.path() / "none.ptx");
    EXPECT_TRUE(delivered.opened);
    EXPECT_EQ(delivered.batches, Batches{0});
    EXPECT_EQ(reader.pointsRemaining, 0u);
    EXPECT_FALSE(reader.HasExtent());
}

TEST_F(PtxIOTest, WritesOneScan) {
    const auto written = [this](std::vector<VpcPoint3D> points, VpcStylizationType type) {
        PtxIO::Write(points, toWx(file), type);
        return readBytes(file);
    };
    const std::string head = "1\n" + pose + identity;
    std::vector<VpcPoint3D> points{VpcPoint3D(1.5, 2, 0, 256, 128, 0, 99),
                                   VpcPoint3D(1.23456789123, 2, 10, 0, 0, 255)};
    EXPECT_EQ(written(points, VPC_Stylization_SCANCOLORS),
              "2\n" + head + "1.5 2 0 0.5 256 128 0\n1.23456789 2 10 0.33203125 0 0 255\n");
    points[0].red = 257;
    EXPECT_EQ(
        written(points, VPC_Stylization_NONE),
        "2\n" + head + "1.5 2 0 7.64926275e-06 1 1 0\n1.23456789 2 10 5.06639481e-06 0 0 1\n");
    points[0].red = 0;
    for (const auto type : {VPC_Stylization_INTENSITY, VPC_Stylization_ELEVATION})
        EXPECT_EQ(
            written(points, type),
            "2\n" + head + "1.5 2 0 0.166015625 0 0 128\n1.23456789 2 10 0.171203613 131 0 0\n");
    EXPECT_EQ(written({}, VPC_Stylization_NONE), "0\n" + head);
}

}  // namespace
