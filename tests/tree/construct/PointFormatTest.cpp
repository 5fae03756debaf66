#include "tree/construct/PointFormat.h"

#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "io/LasIO.h"
#include "support/LasBuilder.h"
#include "support/ReaderTools.h"
#include "tree/construct/PointPacker.h"

namespace vpc::test {

namespace {

using Points = std::vector<VpcPoint3D>;
constexpr unsigned recordBytes = VpcPoint3D::recordSize;
constexpr CoordinateGrid grid{{0.001, 0.25, 1e-7}, {-1234.5, 0.0, 7e6}};

/// Packs the points one format after the other, and in each all of them. Expects that the last one,
/// with `size` bytes a point, gives all of them back to the last bit. With 0 any size will do.
void expectKept(PointFormat& format, const Points& points, unsigned size) {
    std::vector<char> packed(points.size() * recordBytes), records(packed.size());
    int widenings = 0;
    for (unsigned before = format.RecordSize();
         !format.PackOrWiden(points.data(), points.size(), packed.data());
         before = format.RecordSize()) {
        ASSERT_LT(++widenings, 8) << "it is never wide enough";
        ASSERT_GE(format.RecordSize(), before);
    }
    EXPECT_TRUE(size == 0 || format.RecordSize() == size) << format.RecordSize() << " " << size;
    ASSERT_LE(format.RecordSize(), recordBytes);
    ASSERT_GE(format.RecordSize(), PointFormat::smallest);
    format.Unpack(packed.data(), format.RecordSize(), points.size(), records.data());
    for (std::size_t i = 0; i < points.size(); ++i) {
        std::array<char, recordBytes> expected;
        points[i].ToRecord(expected.data());
        const char* record = records.data() + i * recordBytes;
        ASSERT_EQ(std::string(record, recordBytes), std::string(expected.data(), recordBytes)) << i;
        const auto at = format.CoordinatesOf(packed.data() + i * format.RecordSize());
        ASSERT_EQ(std::memcmp(at.data(), record, sizeof at), 0) << i;
    }
}

/// A point on the grid, like those of LAS scans without colours.
VpcPoint3D greyPoint(std::int32_t n) {
    VpcPoint3D p(n * grid.scale[0] + grid.offset[0], -n * grid.scale[1] + grid.offset[1],
                 n / 2 * grid.scale[2] + grid.offset[2]);
    p.intensity = static_cast<std::int16_t>(n);
    p.red = p.green = p.blue = static_cast<std::uint16_t>(n);
    return p;
}

}  // namespace

// What makes points of a scan wider, alone and with everything else.
TEST(PointFormat, KeepsEveryCombinationOfValuesInTheRoomThatItTakes) {
    struct Way {
        unsigned bytes;
        std::function<void(VpcPoint3D&, int i)> change;
    };
    const auto colour = [](unsigned factor) {
        return [=](VpcPoint3D& p, int i) {
            p.red = static_cast<std::uint16_t>(i % 5 * factor);
            p.green = 1;
            p.blue = static_cast<std::uint16_t>(i % 256);
        };
    };
    const auto nothing = [](VpcPoint3D&, int) {};
    const std::vector<Way> places = {
        {12, nothing},
        {24, [](VpcPoint3D& p, int i) { p.y = i == 99 ? std::nextafter(p.y, 0.0) : p.y; }},
        {24, [](VpcPoint3D& p, int i) { p.x = i == 99 ? 1e300 : p.x; }},
        {24, [](VpcPoint3D& p, int i) { p.y = i == 0 ? -0.0 : p.y; }}};
    const std::vector<Way> colours = {
        {0, nothing},
        {0, [](VpcPoint3D& p, int) { p.red = p.green = 3, p.blue = 4; }},
        {3, colour(1)},
        {6, colour(257)}};
    const std::vector<Way> intensities = {
        {2, nothing},
        {8, [](VpcPoint3D& p, int i) { p.intensity += i == 50 ? 65536 : 0; }},
        {8, [](VpcPoint3D& p, int i) { p.intensity = i == 50 ? -0.0 : p.intensity; }}};
    const std::vector<Way> distances = {{0, nothing},
                                        {8, [](VpcPoint3D& p, int i) { p.scannerDistance = i; }}};
    const std::vector<Way> origins = {{0, nothing},
                                      {8, [](VpcPoint3D& p, int i) { p.markerId = i / 90; }},
                                      {8, [](VpcPoint3D& p, int i) { p.sourceIndex = i / 90; }}};
    for (const auto& place : places)
        for (const auto& itsColour : colours)
            for (const auto& intensity : intensities)
                for (const auto& distance : distances)
                    for (const auto& origin : origins) {
                        Points points;
                        unsigned size = 0;
                        for (int i = 0; i < 100; ++i) points.push_back(greyPoint(i * 6 - 300));
                        for (const Way* way :
                             {&place, &itsColour, &intensity, &distance, &origin}) {
                            for (int i = 0; i < 100; ++i) way->change(points[i], i);
                            size += way->bytes;
                        }
                        PointFormat format(points.front(), grid);
                        expectKept(format, points, size);
                        PointFormat widest;
                        expectKept(widest, points, recordBytes);
                    }
}

// What a LAS scan's records hold is what the reader makes of them, point by point and in all.
TEST(PointFormat, KeepsRecordsAsThePointsThatTheyMean) {
    const TempFolder folder;
    const std::filesystem::path path = folder.file("a.las");
    using Point = LasBuilder::Point;
    const std::function<void(Point&, std::uint16_t)> colours[] = {
        [](Point&, std::uint16_t) {},
        [](Point& p, std::uint16_t) { p.red = p.green = p.blue = p.intensity; },
        [](Point& p, std::uint16_t i) { p.red = i % 256, p.blue = 255; },
        [](Point& p, std::uint16_t i) {
            p.green = i >= 500 ? static_cast<std::uint16_t>(65 * i) : 7;
        }};
    LasIO byPoint(300), byRecord(300);
    byPoint.scanIndex = byRecord.scanIndex = 3;
    const std::optional<std::uint64_t> counts[] = {std::nullopt, 0, 1, 300, 1700};
    for (const int format : {0, 2, 3, 7, 9})
        for (const auto& colour : colours) {
            LasBuilder scan;
            scan.format = format;
            scan.versionMinor = format > 5 ? 4 : 2;
            scan.scale = {0.001, -0.25, 1e-7};
            scan.offset = {-1234.5, 0.0, 7e6};
            for (std::uint16_t i = 0; i < 1000; ++i) {
                scan.points.push_back(
                    {i * 2147000 - 1073000000, 700 - i, i % 9, static_cast<std::uint16_t>(i * 65)});
                colour(scan.points.back(), i);
            }
            scan.count = counts[(format + (&colour - colours)) % 5];
            if (format <= 5 && scan.count)
                scan.legacyCount = static_cast<std::uint32_t>(*scan.count);
            writeBytes(path, scan.bytes());
            const Points points = readAll(byPoint, path).points;
            ASSERT_NE(byRecord.initializeRead(toWx(path)), nullptr);
            PointPacker packer;
            std::string records;
            while (byRecord.pointsRemaining != 0) {
                const auto batch = byRecord.nextRecordBatch();
                ASSERT_TRUE(batch.has_value());
                const PackedRun run = packer.Pack(*batch);
                EXPECT_LE(run.stride, 20U);
                std::string some(run.count * recordBytes, '\0');
                run.format->Unpack(run.records, run.stride, run.count, some.data());
                records += some;
            }
            std::string expected(points.size() * recordBytes, '\0');
            for (std::size_t i = 0; i < points.size(); ++i)
                points[i].ToRecord(expected.data() + i * recordBytes);
            EXPECT_TRUE(records == expected) << format;
            EXPECT_EQ(extentOf(byRecord), extentOf(byPoint));
            const auto statistics = [](const LasIO& reader) {
                return joined(reader.maxRed, reader.maxGreen, reader.maxBlue, reader.maxIntensity,
                              reader.pointsRead, reader.batchIndex, reader.missingRecords,
                              reader.nonFinitePoints, reader.HasExtent(), reader.errorMessage);
            };
            EXPECT_EQ(statistics(byRecord), statistics(byPoint));
        }
}

// Nothing is too odd to be kept: some fields of some points are taken from all bit patterns.
TEST(PointFormat, KeepsWhateverADoubleCanBe) {
    std::mt19937_64 engine(1);
    const auto one = [&](unsigned of) { return engine() % of == 0; };
    const auto oddDouble = [&] {
        const double odd[] = {0.0,          -0.0,
                              5e-324,       1e308,
                              -1e308,       6755399441055744.0,
                              2147483648.0, std::numeric_limits<double>::infinity()};
        return one(2) ? odd[engine() % std::size(odd)] : std::bit_cast<double>(engine());
    };
    for (int round = 0; round < 2000; ++round) {
        CoordinateGrid itsGrid = grid;
        for (unsigned axis = 0; axis < 3 && one(2); ++axis)
            (one(2) ? itsGrid.scale : itsGrid.offset)[axis] = oddDouble();
        Points points;
        for (int i = 0; i < 8; ++i) {
            points.push_back(greyPoint(static_cast<std::int32_t>(engine() % 60000) - 30000));
            VpcPoint3D& p = points.back();
            for (double* value : {&p.x, &p.y, &p.z, &p.intensity, &p.scannerDistance})
                if (one(16)) *value = oddDouble();
            if (one(32)) p.green = static_cast<std::uint16_t>(engine());
        }
        PointFormat format(points.front(), one(8) ? std::nullopt : std::optional(itsGrid));
        expectKept(format, points, 0);
    }
}

}  // namespace vpc::test
