#include <algorithm>
#include <cstring>

#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "io/FileIoFactory.h"
#include "support/ProgramRun.h"

namespace vpc::test {
namespace {

using SampleCommandTest = ProgramTest;

/// FNV-1a
std::uint64_t hashOf(const std::string& bytes) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char byte : bytes) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
    return hash;
}

// Whoever names a seed means the scan that it has given so far, to the last byte.
TEST_F(SampleCommandTest, IsTheSameForTheSameSeed) {
    const std::pair<std::string, std::uint64_t> cases[] = {
        {"a.las", 0xd9bf05eb1a0196cd},
        {"b.las --format 7", 0x318d380674942cc5},
        {"c.las --order random", 0xf38477cc78f32945},
        {"a.pts", 0x1cbb2e1fba30cdbc},
        {"a.ptx", 0x45c05fa773708240}};
    for (const auto& [file, hash] : cases) {
        SCOPED_TRACE(file);
        const std::string name = file.substr(0, 5);
        EXPECT_EQ(run("sample --seed 3 --points 400000 " + file).out, name + ": 400000 points\n");
        EXPECT_EQ(hashOf(read(name)), hash);
        for (const unsigned long long points : {1ULL, 7ULL, 400000ULL}) {
            expectDone("sample --force --seed 4 --points " + std::to_string(points) + " " + file);
            VpcBoundingBoxAxisAligned box;
            ScanSummary summary;
            wxString message;
            const wxString path = toWx(folder.file(name));
            ASSERT_TRUE(FileIoFactory::DetermineMultipleBoundingBox(
                {path}, FileIoFactory::GetDataFormat(path), box, message, &summary));
            EXPECT_EQ(summary.points, points);
            EXPECT_EQ(summary.pointsWithoutValues, 0U);
        }
        EXPECT_NE(hashOf(read(name)), hash);
    }
}

/// The header of a LAS file of point format 3 and then its records.
std::vector<std::string> recordsOf(const std::string& las) {
    constexpr std::size_t headerSize = 227;
    constexpr std::size_t recordSize = 34;
    std::vector<std::string> result{las.substr(0, headerSize)};
    for (std::size_t at = headerSize; at < las.size(); at += recordSize)
        result.push_back(las.substr(at, recordSize));
    return result;
}

/// When a point was measured.
double timeOf(const std::string& record) {
    double time = 0.0;
    std::memcpy(&time, record.data() + 20, sizeof time);
    return time;
}

// So many points do not fit into one part of the file.
TEST_F(SampleCommandTest, RandomOrderHasThePointsOfTheFlight) {
    constexpr std::size_t points = 100000;
    expectDone("sample --points 100000 flight.las");
    expectDone("sample --points 100000 random.las --order random");
    std::vector<std::string> flight = recordsOf(read("flight.las"));
    std::vector<std::string> random = recordsOf(read("random.las"));
    ASSERT_EQ(flight.size(), points + 1);
    ASSERT_EQ(random.size(), points + 1);
    EXPECT_EQ(flight.front(), random.front());
    // Neither what is next to each other nor the two halves of the file tell the order any more.
    std::size_t rising = 0;
    std::size_t fromFirstHalf = 0;
    for (std::size_t i = 1; i < points; ++i) {
        if (timeOf(random[i]) < timeOf(random[i + 1])) ++rising;
        if (i <= points / 2 && timeOf(random[i]) < timeOf(flight[points / 2])) ++fromFirstHalf;
    }
    EXPECT_NEAR(static_cast<double>(rising), points / 2.0, points / 100.0);
    EXPECT_NEAR(static_cast<double>(fromFirstHalf), points / 4.0, points / 100.0);
    std::sort(flight.begin(), flight.end());
    std::sort(random.begin(), random.end());
    EXPECT_TRUE(flight == random);
}

}  // namespace
}  // namespace vpc::test
