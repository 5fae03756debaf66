#include "io/PlyIO.h"

#include <gtest/gtest.h>

#include "support/ReaderTools.h"

using namespace vpc::test;

namespace {

class PlyIOTest : public testing::Test {
protected:
    std::string written() const { return readBytes(file); }
    /// The lines after the header and `skipped` more, joined by commas.
    std::string body(int skipped) const {
        std::istringstream text(written());
        std::string lines;
        std::string line;
        while (std::getline(text, line) && line != "end_header") continue;
        for (int i = 0; std::getline(text, line); ++i)
            if (i >= skipped) lines += line + ",";
        return lines;
    }
    static std::string vertexLine(const VpcPoint3D& p) {
        return p.ToString(false).utf8_string() + "\t0\t0\t0,";
    }
    TempFolder folder;
    std::filesystem::path file = folder.path() / std::filesystem::u8path("\xc3\xbc.ply");
    wxString name = toWx(file);
};

TEST_F(PlyIOTest, WritesVerticesWithColoursAndEdges) {
    EXPECT_TRUE(PlyIO::WriteEdges({VpcPoint3D(1, 2, 3, 255, 0, 65535), VpcPoint3D(-0.25, 1e6, 0)},
                                  {{0, 1}, {1, 0}}, name));
    EXPECT_EQ(written(),
              "ply\nformat ascii 1.0\ncomment normal vectors\nelement vertex 2\n"
              "property float x\nproperty float y\nproperty float z\n"
              "property uchar red\nproperty uchar green\nproperty uchar blue\n"
              "element edge 2\nproperty int vertex1\nproperty int vertex2\nend_header\n"
              "1.000000\t2.000000\t3.000000\t255\t0\t65535\n"
              "-0.250000\t1000000.000000\t0.000000\t0\t0\t0\n0 1\n1 0\n");
}

TEST_F(PlyIOTest, WritesTheEdgesOfBoxesAndOfAFrustum) {
    EXPECT_TRUE(
        PlyIO::WriteAxisAlignedBoundingBoxes({{0, 0, 0, 1, 2, 3}, {5, 5, 5, 6, 6, 6}}, name));
    EXPECT_EQ(body(1).substr(0, 33), vertexLine(VpcPoint3D(0, 0, 3)));
    EXPECT_EQ(body(16),
              "0 1,0 2,2 3,1 3,1 5,3 7,0 4,2 6,4 5,5 7,6 7,4 6,"
              "8 9,8 10,10 11,9 11,9 13,11 15,8 12,10 14,12 13,13 15,14 15,12 14,");
    VpcFrustumDef frustum;
    frustum.UpdateViewGeometry(VpcPoint3D(1, 2, 10), VpcPoint3D(1, 2, 0), VpcVector3D(0, 1, 0), 10,
                               4, 2, false, {});
    EXPECT_TRUE(PlyIO::WriteFrustum(frustum, name));
    std::string vertices;
    for (const VpcPoint3D& vertex : frustum.GetRefVertices()) vertices += vertexLine(vertex);
    EXPECT_EQ(body(0), vertices + vertexLine(VpcPoint3D(1, 2, 10)) +
                           vertexLine(VpcPoint3D(1, 2, 0)) +
                           "0 1,0 2,1 3,2 3,0 4,1 5,2 6,3 7,4 5,4 6,5 7,6 7,8 9,");
}

TEST_F(PlyIOTest, ReadsVerticesBack) {
    std::vector<VpcPoint3D> points;
    VpcBoundingBoxAxisAligned box;
    const std::string head =
        "ply\r\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\n"
        "property float z\nelement face 2\nproperty list uchar int vertex_index\nend_header\n";
    writeBytes(file, head + "1 2 3\n-1.5 1e1 0 7 7 7\r\nnan 0 0\n3 0 1 2\n3 0 1 2\n3 0 0 0\n");
    testing::internal::CaptureStdout();
    EXPECT_TRUE(PlyIO::Read(name, points, box));
    EXPECT_EQ(joined(box.minPoint, box.maxPoint),
              "-1.500000\t2.000000\t0.000000 1.000000\t10.000000\t3.000000");
    // Appends; a file that ends early gives what it holds.
    writeBytes(file, head + "9 9\n");
    EXPECT_TRUE(PlyIO::Read(name, points, box));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "After reading ply file, now has 3 points and 2 faces.\n"
              "After reading ply file, now has 4 points and 0 faces.\n");
    EXPECT_EQ(describe(points.back()), "9 9 0 / 0 0 0 / 0 / -1 / 1");
    EXPECT_FALSE(PlyIO::Read(toWx(folder.path() / "none.ply"), points, box));
}

}  // namespace
