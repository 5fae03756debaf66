#include <cmath>
#include <limits>

#include <fcntl.h>
#include <gtest/gtest.h>

#include "io/PtsIO.h"
#include "io/PtxIO.h"
#include "support/ReaderTools.h"

using namespace vpc::test;

namespace {

using Batches = std::vector<unsigned long long>;

/// A PTS or PTX reader with batches of three points.
template <class Reader>
class TextScanTest : public testing::Test {
protected:
    Delivered read(const std::string& text) {
        writeBytes(file, text);
        return readAll(reader, file);
    }
    void open(const std::string& text) {
        writeBytes(file, text);
        reader.initializeRead(toWx(file));
    }
    /// The points of a text: coordinates, colour, intensity and distance; only the coordinates
    /// where the others are as in a point without them.
    std::string pointsOf(const std::string& text) {
        std::string points;
        for (const VpcPoint3D& p : read(text).points) {
            const std::string attributes =
                joined(" /", p.red, p.green, p.blue, '/', p.intensity, '/', p.scannerDistance);
            points += joined(p.x, p.y, p.z);
            points += (attributes == " / 0 0 0 / 0 / 1" ? "" : attributes) + "; ";
        }
        return points;
    }
    TempFolder folder;
    std::filesystem::path file = folder.path() / "a.txt";
    Reader reader{3};
};

// --- PTS -----------------------------------------------------------------------------------------

class PtsIOTest : public TextScanTest<PtsIO> {};

TEST_F(PtsIOTest, ReadsOneStreamOfNumbersAndTakesWhatIsMissingOrMalformedForZero) {
    const struct {
        std::string text;
        const char* points;
        unsigned long long withoutValues;
    } cases[] = {{"1\n1\t2\t3\t-12.5", "1 2 3 / 0 0 0 / -12.5 / 1; ", 0},
                 {"1\r\n1 1 1 40.9 50 60\r\n", "1 1 1 / 40 50 60 / 50.3 / 1; ", 0},
                 {"1\n0 0 0 100 300 -1 65536\n", "0 0 0 / 300 65535 0 / 100 / 1; ", 0},
                 {"2\n1 2 3\n4\n5 6\n", "1 2 3; 4 5 6; ", 0},
                 {"1\n1e1 0x10 -inf 4", "10 16 -inf / 0 0 0 / 4 / 1; ", 0},
                 // The text ends in the middle of the second point.
                 {"4\n1 2 3\n4 5", "1 2 3; 4 5 0; 0 0 0; 0 0 0; ", 2},
                 // The next point goes on where the scanner stopped, which is here for good.
                 {"3\n1 2 3\n4 x 6\n7 8 9\n", "1 2 3; 4 0 0; 0 0 0; ", 1},
                 {"no count\n1 2 3\n", "0 0 0; ", 1},
                 // The digits before the point are the count; a count follows the block.
                 {"1.5 3.25\n4 1 6\n", "0.5 3.25 4; 6 0 0; ", 0}};
    for (const auto& c : cases) {
        EXPECT_EQ(pointsOf(c.text), c.points) << c.text;
        EXPECT_EQ(reader.pointsWithoutValues, c.withoutValues) << c.text;
    }
    // Any other number of columns: what the buffer holds.
    for (const char* text : {"1\n.1 2\n", "1\n.1 2 3 4 5\n", "1\n.1 2 3 4 5 6 7 8\n", "1", ""}) {
        EXPECT_EQ(pointsOf(text), "6 0 0; ") << text;
        EXPECT_EQ(joined(reader.pointsWithoutValues, extentOf(reader)), "1 6 0 0 - 6 0 0") << text;
    }
}

TEST_F(PtsIOTest, ReadsBlocksAndBatchesInTurn) {
    read("1\n-100 0 0\n");
    EXPECT_EQ(read("2\n1 1 1\n2 2 2\n4\n3 3 -3\n4 4 4\n5 5 5\n6 6 6\n1\n7 7 7\nend").batches,
              (Batches{2, 3, 1, 1}));
    EXPECT_EQ(joined(extentOf(reader), reader.pointsWithoutValues), "1 1 -3 - 7 7 7 0");
    read("4\nnan 0 0 5 900 1 1\n1 2 3 5 10 1 1\n1 inf 3 5 800 1 1\n4 5 6 5 20 1 1\n");
    EXPECT_EQ(joined(reader.nonFinitePoints, reader.maxRed), "2 20");
    EXPECT_EQ(extentOf(reader), "1 2 3 - 4 5 6");
}

TEST_F(PtsIOTest, NotesACountThatCannotBeTrue) {
    for (const char* count : {"100", "18446744073709551615", "99999999999999999999999", "-5"}) {
        open(std::string(count) + "\n1 2 3\n");
        EXPECT_NE(reader.impossibleCount, 0u) << count;
        EXPECT_EQ(reader.nextPointBatch(), 3u) << count;
    }
    open("8\n1 2 3\n");
    // As many points as the file has bytes.
    EXPECT_EQ(joined(reader.impossibleCount, reader.hasMoreBlocks, reader.blockPointCount,
                     reader.numberOfBatches, reader.batchIndex),
              "0 1 8 3 0");
    EXPECT_EQ(fcntl(fileno(reader.stream.get()), F_GETFL) & O_ACCMODE, O_RDWR)
        << "so that a scan that is read-only to the user is not read";
}

TEST_F(PtsIOTest, TruncatesColoursToTheirLow16Bits) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::pair<double, unsigned> cases[] = {
        {65535.9, 65535}, {65537.5, 1},      {-0.9, 0},         {-1, 65535},
        {-65537, 65535},  {4294967297.0, 1}, {1e15 + 3, 32771}, {-1e15, 32768},
        {-9.3e18, 0},     {9.3e18, 0},       {infinity, 0},     {std::nan(""), 0}};
    VpcPoint3D& point = reader.pointBuffer[0];
    for (const auto& [value, expected] : cases) {
        reader.setPointValues(point, 1, 2, 3, value, value, value, 0, 7, 2.5);
        EXPECT_EQ(joined(point.red, point.green, point.blue), joined(expected, expected, expected))
            << value;
    }
}

TEST_F(PtsIOTest, WritesColoursOrElevation) {
    const VpcPoint3D low(1.5, -1e-7, 0, 1, 2, 65535, 99);
    const VpcPoint3D high(123456.7891, 1e20, 10, 4, 5, 6);
    PtsIO::Write({low, high}, toWx(file), false);
    EXPECT_EQ(readBytes(file), "2\n1.5 -1e-07 0 1 2 65535\n123456.789 1e+20 10 4 5 6\n");
    PtsIO::Write({low, high}, toWx(file), true);
    EXPECT_EQ(readBytes(file),
              "2\n1.5 -1e-07 0 0 0 0 127.5\n123456.789 1e+20 10 255 131.484375 0 0\n");
    PtsIO::Write({low}, toWx(folder.path() / "none" / "a.pts"), false);
}

// --- PTX -----------------------------------------------------------------------------------------

class PtxIOTest : public TextScanTest<PtxIO> {};

const std::string pose = "0 0 0\n1 0 0\n0 1 0\n0 0 1\n";
const std::string identity = "1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n";
const std::string pointLine = "1 2 3 4 5 6 7\n";

std::string scan(const std::string& size, const std::string& lines,
                 const std::string& matrix = identity) {
    return size + "\n" + pose + matrix + lines;
}

TEST_F(PtxIOTest, ReadsScansEachByItsOwnMatrixAndFirstLine) {
    const std::string moved = "1 0 0 0\n0 1 0 0\n0 0 1 0\n10 20 30 1\n";
    const std::string turned = "0 1 0 5\n-1 0 0 5\n0 0 2 5\n0 0 100 1\n";
    const std::pair<std::string, const char*> cases[] = {
        {scan("2\n2", "1 2 3 0.5 1 2 3\n0 0 0 .5 9 9 9\r\n-1 5 0 0.25 300 1 2\n0 0 1 0 0 0 0\n"),
         "1 2 3 / 1 2 3 / 0.5 / 1; -1 5 0 / 300 1 2 / 0.25 / 1; 0 0 1; "},
        {scan("1 1", "3 4 0 1 7 8 9\n", moved) +
             scan("2 1", "1 2 2 1 7 8 9\n0 0 0 0 0 0 0\n", turned) + scan("1 1", pointLine) + "0 5",
         "13 24 30 / 7 8 9 / 1 / 5; -2 1 104 / 7 8 9 / 1 / 3; 1 2 3 / 5 6 7 / 4 / 1; "},
        // Without colour, after blank lines and with blanks around the values.
        {scan("1 1", pointLine) + scan("1 1", "\r\n \t1 2 3 4 \r\n") +
             scan("2 1", "1 2 3 4\n4 5 6 0.25\n") + scan("1 1", pointLine),
         "1 2 3 / 5 6 7 / 4 / 1; 1 2 3 / 0 0 0 / 4 / 1; 1 2 3 / 0 0 0 / 4 / 1; "
         "4 5 6 / 0 0 0 / 0.25 / 1; 1 2 3 / 5 6 7 / 4 / 1; "},
        // Any other number of values: one stream of seven for each point.
        {scan("2 1", "1 2 3\n4 5 6 7\n8 9 10\n11 12 13 14\n"),
         "1 2 3 / 5 6 7 / 4 / 1; 8 9 10 / 12 13 14 / 11 / 1; "},
        // Colours are integers: the scanner stops at the point of the first one for good.
        {scan("3 1", pointLine + "1 2 3 4 9.5 6 7\n8 8 8 8 8 8 8\n"),
         "1 2 3 / 5 6 7 / 4 / 1; 1 2 3 / 9 0 0 / 4 / 1; 0.5 6 7 / 8 8 8 / 8 / 1; "}};
    for (const auto& [text, points] : cases) EXPECT_EQ(pointsOf(text), points) << text;
    EXPECT_EQ(read(scan("10 1", pointLine + "1 2")).points.size(), 2u);
    EXPECT_EQ(reader.pointsWithoutValues, 8u);
}

TEST_F(PtxIOTest, HeadersWithoutAGridEndTheReading) {
    for (const char* size :
         {"", "0 5", "5 0", "x", "4294967296 4294967296", "18446744073709551615 3"}) {
        EXPECT_EQ(pointsOf(scan(size, pointLine)), "") << size;
        EXPECT_EQ(reader.impossibleCount, 0u) << size;
        EXPECT_EQ(read(scan("1 1", pointLine) + scan(size, pointLine)).points.size(), 1u) << size;
    }
    open(scan("1000 1000", pointLine));
    EXPECT_EQ(joined(reader.scanPointCount, reader.numberOfBatches), "1000000 333334");
    EXPECT_EQ(reader.impossibleCount, 1000000u) << "noted where it cannot be true";
    EXPECT_EQ(reader.nextPointBatch(), 1u);
}

TEST_F(PtxIOTest, StatisticsAreOfTheFileAndOfFinitePoints) {
    read(scan("1 1", "-50 -50 -50 9 900 0 0\n"));
    // The first batch holds no point at all, the second starts with one that is not finite.
    const std::string empty = "0 0 0 0 0 0 0\n";
    EXPECT_EQ(read(scan("6 1", empty + empty + empty +
                                   "1 nan 3 9 999 0 0\n4 5 6 1 2 3 4\n7 8 9 1 2 3 4\n") +
                   scan("1 1", "5 5 6 1 2 3 4\n"))
                  .batches,
              (Batches{0, 3, 1}));
    EXPECT_EQ(extentOf(reader), "4 5 6 - 7 8 9");
    EXPECT_EQ(joined(reader.nonFinitePoints, reader.maxRed), "1 900");
    EXPECT_EQ(readAll(reader, folder.path() / "none.ptx").batches, Batches{0});
    EXPECT_FALSE(reader.HasExtent());
}

TEST_F(PtxIOTest, WritesOneScan) {
    const auto written = [this](std::vector<VpcPoint3D> points, VpcStylizationType type) {
        PtxIO::Write(points, toWx(file), type);
        return readBytes(file);
    };
    const std::string head = "2\n1\n" + pose + identity;
    std::vector<VpcPoint3D> points{VpcPoint3D(1.5, 2, 0, 256, 128, 0, 99),
                                   VpcPoint3D(1.23456789123, 2, 10, 0, 0, 256)};
    EXPECT_EQ(written(points, VPC_Stylization_SCANCOLORS),
              head + "1.5 2 0 0.5 256 128 0\n1.23456789 2 10 0.333333333 0 0 256\n");
    points[0].red = 257;
    EXPECT_EQ(written(points, VPC_Stylization_NONE),
              head + "1.5 2 0 7.64926275e-06 1 1 0\n1.23456789 2 10 5.08626302e-06 0 0 1\n");
    points[0].red = 0;
    for (const auto type : {VPC_Stylization_INTENSITY, VPC_Stylization_ELEVATION})
        EXPECT_EQ(written(points, type),
                  head + "1.5 2 0 0.166015625 0 0 128\n1.23456789 2 10 0.171203613 131 0 0\n");
}

}  // namespace
