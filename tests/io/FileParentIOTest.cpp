#include "io/FileParentIO.h"

#include <limits>

#include <gtest/gtest.h>

#include "support/ReaderTools.h"

using namespace vpc::test;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// A reader without files, to get at what all of them share.
class NoReader : public FileParentIO {
public:
    using FileParentIO::FileParentIO;
    VpcPoint3D* initializeRead(wxString) override { return pointBuffer; }
    bool readHeader(wxString, bool) override { return false; }
    unsigned long long nextPointBatch() override { return 0; }
    bool closeRead() override { return true; }
};

TEST(FileParentIO, TruncatesColoursToTheirLow16Bits) {
    const std::pair<double, unsigned> cases[] = {
        {255.9, 255},      {65535.9, 65535}, {65536, 0},      {65537.5, 1},
        {-0.9, 0},         {-1, 65535},      {-65537, 65535}, {4294967297.0, 1},
        {1e15 + 3, 32771}, {-1e15, 32768},   {9.3e18, 0},     {-9.3e18, 0},
        {1e300, 0},        {infinity, 0},    {-infinity, 0},  {notANumber, 0}};
    NoReader reader(1);
    VpcPoint3D& point = reader.pointBuffer[0];
    for (const auto& [value, expected] : cases) {
        reader.setPointValues(point, 1, 2, 3, value, value, value, 0, 7, 2.5);
        EXPECT_EQ(joined(point.red, point.green, point.blue), joined(expected, expected, expected))
            << value;
    }
}

TEST(FileParentIO, KeepsMaximaAndExtentOfFinitePointsOnly) {
    NoReader reader(2);
    VpcPoint3D& point = reader.pointBuffer[0];
    point.markerId = 42;
    reader.setPointValues(point, 1, -2, 3, 10, 20, 30, 5, 4, 2.5);
    reader.setPointValues(point, -1, 2, 3.5, 9, 21, 29, -5, 4, 2.5);
    EXPECT_EQ(describe(point), "-1 2 3.5 / 9 21 29 / -5 / 4 / 2.5");
    EXPECT_EQ(point.markerId, 42);
    const double bad[][3] = {{notANumber, 0, 0}, {0, infinity, 0}, {0, 0, -infinity}};
    for (const auto& p : bad) {
        reader.setPointValues(point, p[0], p[1], p[2], 999, 999, 999, 999, 4, 2.5);
        reader.UpdateExtent(p[0], p[1], p[2]);
    }
    EXPECT_EQ(joined(point.red, reader.nonFinitePoints), "999 3");
    EXPECT_EQ(joined(reader.maxRed, reader.maxGreen, reader.maxBlue, reader.maxIntensity),
              "10 21 30 5");
    EXPECT_EQ(extentOf(reader), "-1 -2 3 - 1 2 3.5");

    reader.InitializeExtent(7, 8, 9);
    reader.UpdateExtent(6, 8.5, 9);
    EXPECT_EQ(extentOf(reader), "6 8 9 - 7 8.5 9");
    reader.InitializeExtent(notANumber, 8, 9);
    EXPECT_EQ(extentOf(reader), emptyExtent);
    reader.UpdateColorIntensityRanges(20.9, 3, 65536, notANumber);
    EXPECT_EQ(joined(reader.maxRed, reader.maxGreen, reader.maxBlue, reader.maxIntensity),
              "20 21 0 5");
}

}  // namespace
