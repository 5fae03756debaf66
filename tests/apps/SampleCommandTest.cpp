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
    const std::pair<std::string, std::uint64_t> cases[] = {{"a.las", 0xd9bf05eb1a0196cd},
                                                           {"b.las --format 7", 0x318d380674942cc5},
                                                           {"a.pts", 0x1cbb2e1fba30cdbc},
                                                           {"a.ptx", 0x45c05fa773708240}};
    for (const auto& [file, hash] : cases) {
        SCOPED_TRACE(file);
        const std::string name = file.substr(0, 5);
        EXPECT_EQ(run("sample --seed 3 --points 400000 " + file).out, name + ": 400000 points\n");
        EXPECT_EQ(hashOf(read(name)), hash);
        for (const unsigned long long points : {1ULL, 7ULL, 400000ULL}) {
            expectDone("sample --seed 4 --points " + std::to_string(points) + " " + file);
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

}  // namespace
}  // namespace vpc::test
