#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "io/FileIoFactory.h"
#include "support/ProgramRun.h"

namespace vpc::test {
namespace {

using SampleCommandTest = ProgramTest;

TEST_F(SampleCommandTest, HoldsThePointsAskedForAtTenASquareMetre) {
    for (const std::string file : {"a.las", "b.las --format 7", "a.pts", "a.ptx"}) {
        SCOPED_TRACE(file);
        const std::string name = file.substr(0, 5);
        for (const unsigned long long points : {1ULL, 7ULL, 40000ULL}) {
            expectDone("sample --seed 3 --points " + std::to_string(points) + " " + file);
            VpcBoundingBoxAxisAligned box;
            ScanSummary summary;
            wxString message;
            const wxString path = toWx(folder.file(name));
            ASSERT_TRUE(FileIoFactory::DetermineMultipleBoundingBox(
                {path}, FileIoFactory::GetDataFormat(path), box, message, &summary));
            EXPECT_EQ(summary.points, points);
            EXPECT_EQ(summary.pointsWithoutValues, 0U);
            EXPECT_EQ(message, "");
            if (points < 1000) continue;
            EXPECT_NEAR(box.sideX * box.sideY, 4000 * 1.2, 800);
            EXPECT_TRUE(box.sideZ > 5.0 && box.sideZ < 90.0) << "there are trees and houses";
        }
        const std::string first = read(name);
        expectDone("sample --seed 3 --points 40000 " + file);
        EXPECT_EQ(read(name), first);
        expectDone("sample --seed 4 --points 40000 " + file);
        EXPECT_NE(read(name), first);
    }
}

TEST_F(SampleCommandTest, ASignalLeavesNothing) {
    ProgramRun endless("sample a.pts --points 2000000000", folder.path());
    ASSERT_TRUE(ProgramRun::waitUntil([&] { return !folder.holdsOnly({}); }));
    endless.send(SIGINT);
    EXPECT_EQ(endless.wait().status, 130);
    EXPECT_TRUE(folder.holdsOnly({}));
}

}  // namespace
}  // namespace vpc::test
