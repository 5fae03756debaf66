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
    const std::pair<std::string, std::uint64_t> cases[] = {{"a.las", 0xc62002e6715e79b3},
                                                           {"b.las --format 7", 0x8c467b21e9f815c},
                                                           {"a.pts", 0x7deea604849d0bba},
                                                           {"a.ptx", 0x3f5ff5b501e56e2d}};
    for (const auto& [file, hash] : cases) {
        SCOPED_TRACE(file);
        const std::string name = file.substr(0, 5);
        EXPECT_EQ(run("sample --seed 3 --points 40000 " + file).out, name + ": 40000 points\n");
        EXPECT_EQ(hashOf(read(name)), hash);
        for (const unsigned long long points : {1ULL, 7ULL, 40000ULL}) {
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
