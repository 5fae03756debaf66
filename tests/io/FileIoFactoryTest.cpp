#include "io/FileIoFactory.h"

#include <gtest/gtest.h>

#include "support/LasBuilder.h"
#include "support/ReaderTools.h"

using namespace vpc::test;

namespace {

class FileIoFactoryTest : public testing::Test {
protected:
    wxString write(const std::string& name, const std::string& bytes) {
        writeBytes(folder.path() / name, bytes);
        return toWx(folder.path() / name);
    }
    bool determineBox(const std::vector<wxString>& files, VpcDataFormat format) {
        return FileIoFactory::DetermineMultipleBoundingBox(files, format, box, message, &summary);
    }
    std::string corners() const { return describeBox(box.minPoint, box.maxPoint); }
    TempFolder folder;
    VpcBoundingBoxAxisAligned box{VpcPoint3D(1, 1, 1), VpcPoint3D(2, 2, 2)};
    wxString message = "before";
    ScanSummary summary;
};

TEST_F(FileIoFactoryTest, ColoursAre16BitFrom256On) {
    for (const std::string green : {"255", "256"}) {
        const wxString file = write("a.pts", "1\n0 0 0 900 0 " + green + " 0\n");
        EXPECT_EQ(FileIoFactory::DetermineIs16bitColor({file}, DataFormat_PTS, message),
                  green == "256");
    }
}

TEST_F(FileIoFactoryTest, TheBoxHoldsAllFilesThatDeliverPoints) {
    const wxString a = write("a.pts", "1\n1 2 3\n");
    const wxString b = write("b.pts", "2\n-1 5 3\n0 0 4\n");
    const wxString infinite = write("c.pts", "1\nnan 2 3\n");
    const wxString five = write("d.pts", "2\n.9 9 9 9 9\n9 9 9 9 9\n");
    EXPECT_TRUE(determineBox({infinite, a, five, b}, DataFormat_PTS));
    // The points of the unknown layout are those of the buffer: that of the file before and zeros.
    EXPECT_EQ(corners(), "-1 0 0 - 1 5 4");
    EXPECT_EQ(joined(summary.points, summary.nonFinitePoints, summary.pointsWithoutValues),
              "6 1 2");
    EXPECT_EQ(message.BeforeFirst('\n'), summary.scans[0].sentences.at(0));
    message = "before";
    EXPECT_TRUE(determineBox({a}, DataFormat_PTS));
    EXPECT_EQ(corners(), "1 2 3 - 1 2 3") << "begins anew";
    EXPECT_EQ(message, "before") << "a whole scan needs no words";
}

TEST_F(FileIoFactoryTest, WithoutPointsTheBoxStaysAsItWas) {
    LasBuilder none, one;
    none.offset = {500, 500, 500};
    one.points = {{100, 100, 100, 0, 0, 0, 0}};
    const wxString empty = write("a.las", none.bytes());
    EXPECT_TRUE(determineBox({empty, empty}, DataFormat_LAS));
    EXPECT_TRUE(determineBox({toWx(folder.path() / "none.pts")}, DataFormat_PTS));
    EXPECT_FALSE(determineBox({empty}, DataFormat_Unknown));
    EXPECT_EQ(corners(), "1 1 1 - 2 2 2");
    const char* warning = "none.pts cannot be opened (No such file or directory) and is left out";
    EXPECT_TRUE(message.EndsWith(warning)) << message;
    EXPECT_TRUE(determineBox({empty, write("b.las", one.bytes())}, DataFormat_LAS));
    EXPECT_EQ(corners(), "1 1 1 - 1 1 1");
}

}  // namespace
