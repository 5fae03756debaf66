#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "io/FileIoFactory.h"
#include "io/LasIO.h"
#include "support/ProgramRun.h"

namespace vpc::test {
namespace {

using testing::HasSubstr;
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

TEST_F(SampleCommandTest, FilesSayWhatThePointsAre) {
    for (const std::string format : {"3", "7"}) {
        expectDone("sample a.las --points 20000 --format " + format);
        LasIO reader(100000);
        ASSERT_NE(reader.initializeRead(toWx(folder.file("a.las"))), nullptr);
        EXPECT_EQ(reader.versionMinor, format == "3" ? 2 : 4);
        EXPECT_EQ(reader.pointDataFormat, std::stoi(format));
        EXPECT_EQ(reader.nextPointBatch(), 20000U);
        EXPECT_GT(reader.maxRed, 256) << "colours are sixteen bits deep";
        EXPECT_DOUBLE_EQ(reader.headerMax.x, reader.extentMax.x);
        reader.closeRead();
    }
    expectDone("sample a.ptx --points 5000");
    const std::string text = read("a.ptx");
    EXPECT_THAT(text, HasSubstr("\n0 0 0 0.5 0 0 0\n")) << "an empty cell";
    EXPECT_THAT(text, HasSubstr("\n0.800 0.600 0 0\n-0.600 0.800 0 0\n0 0 1 0\n458500.000 "));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'),
              10 + std::stoll(text) * std::stoll(text.substr(text.find('\n') + 1)));
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
