#include "io/PlyIO.h"

#include <gtest/gtest.h>

#include "support/ReaderTools.h"

using namespace vpc::test;

namespace {

std::vector<VpcPoint3D> corners(int count) {
    std::vector<VpcPoint3D> points;
    for (int i = 0; i < count; ++i) points.emplace_back(i, -i, 0.5 * i);
    return points;
}

class PlyIOTest : public testing::Test {
protected:
    std::string written() const { return readBytes(file); }
    /// The lines after the header.
    std::vector<std::string> body() const {
        std::istringstream text(written());
        std::vector<std::string> lines;
        bool inBody = false;
        for (std::string line; std::getline(text, line);) {
            if (inBody) lines.push_back(line);
            inBody = inBody || line == "end_header";
        }
        return lines;
    }
    TempFolder folder;
    std::filesystem::path file = folder.path() / std::filesystem::u8path("\xc3\xbc.ply");
    wxString name = toWx(file);
};

TEST_F(PlyIOTest, WritesVerticesWithColoursAndEdges) {
    EXPECT_TRUE(PlyIO::WriteEdges({VpcPoint3D(1, 2, 3, 255, 0, 65535), VpcPoint3D(-0.25, 1e6, 0)},
                                  {{0, 1}, {1, 0}}, name));
    const std::string properties =
        "property float x\nproperty float y\nproperty float z\n"
        "property uchar red\nproperty uchar green\nproperty uchar blue\n";
    EXPECT_EQ(written(), "ply\nformat ascii 1.0\ncomment normal vectors\nelement vertex 2\n" +
                             properties +
                             "element edge 2\nproperty int vertex1\nproperty int vertex2\n"
                             "end_header\n"
                             "1.000000\t2.000000\t3.000000\t255\t0\t65535\n"
                             "-0.250000\t1000000.000000\t0.000000\t0\t0\t0\n0 1\n1 0\n");
    EXPECT_TRUE(PlyIO::WriteVertices(corners(3), name));
    EXPECT_NE(written().find("element vertex 3\n"), std::string::npos);
    EXPECT_NE(written().find("element edge 0\n"), std::string::npos);
    EXPECT_EQ(body().size(), 3u);
    EXPECT_TRUE(PlyIO::WriteVertices({}, toWx(folder.path() / "none" / "a.ply")));
}

TEST_F(PlyIOTest, WritesFacesAsTrianglesOfTheirFirstThree) {
    const std::string head =
        "ply\nformat ascii 1.0\nelement vertex 1\nproperty float x\nproperty float y\n"
        "property float z\nelement face 2\nproperty list uchar int vertex_index\nend_header\n"
        "0.000000\t0.000000\t0.000000\n";
    EXPECT_TRUE(PlyIO::WriteVerticesFaces(corners(1), {{4, 5, 6, 7}, {1, 2}}, name));
    EXPECT_EQ(written(), head + "3 4 5 6\n3 1 2 2\n");
    EXPECT_TRUE(PlyIO::WriteVerticesTriangles(corners(1), {{1, 2, 3}, {3, 2, 1}}, name));
    EXPECT_EQ(written(), head + "3 1 2 3\n3 3 2 1\n");

    EXPECT_TRUE(PlyIO::WriteCuboid(corners(8), name));
    const auto lines = body();
    ASSERT_EQ(lines.size(), 20u);
    EXPECT_EQ(std::vector<std::string>(lines.begin() + 8, lines.end()),
              (std::vector<std::string>{"3 0 1 2", "3 0 2 3", "3 0 3 7", "3 0 4 7", "3 3 2 6",
                                        "3 3 6 7", "3 1 2 6", "3 1 5 6", "3 0 1 5", "3 0 4 5",
                                        "3 4 5 6", "3 4 6 7"}));

    EXPECT_TRUE(PlyIO::WritePlaneSegments({corners(2), corners(5), corners(3)}, name));
    const auto fans = body();
    ASSERT_EQ(fans.size(), 14u);
    EXPECT_EQ(std::vector<std::string>(fans.begin() + 10, fans.end()),
              (std::vector<std::string>{"3 2 3 4", "3 2 4 5", "3 2 5 6", "3 7 8 9"}));
}

TEST_F(PlyIOTest, WritesTheEdgesOfBoxes) {
    EXPECT_TRUE(
        PlyIO::WriteAxisAlignedBoundingBoxes({{0, 0, 0, 1, 2, 3}, {5, 5, 5, 6, 6, 6}}, name));
    const auto lines = body();
    ASSERT_EQ(lines.size(), 16u + 24u);
    const char* const expected[] = {"0 0 0", "0 0 3", "0 2 0", "0 2 3",
                                    "1 0 0", "1 0 3", "1 2 0", "1 2 3"};
    for (std::size_t i = 0; i < 8; ++i) {
        VpcPoint3D p;
        std::istringstream line(lines[i]);
        line.imbue(std::locale::classic());
        line >> p.x >> p.y >> p.z;
        EXPECT_EQ(joined(p.x, p.y, p.z), expected[i]);
    }
    std::string edges;
    for (std::size_t i = 16; i < 40; ++i) edges += lines[i] + (i == 27 ? "|" : ",");
    EXPECT_EQ(edges,
              "0 1,0 2,2 3,1 3,1 5,3 7,0 4,2 6,4 5,5 7,6 7,4 6|"
              "8 9,8 10,10 11,9 11,9 13,11 15,8 12,10 14,12 13,13 15,14 15,12 14,");
}

TEST_F(PlyIOTest, WritesTheEdgesOfAFrustum) {
    VpcTransform3D moved;
    VpcFrustumDef frustum;
    frustum.UpdateViewGeometry(VpcPoint3D(1, 2, 10), VpcPoint3D(1, 2, 0), VpcVector3D(0, 1, 0), 10,
                               4, 2, false, moved);
    EXPECT_TRUE(PlyIO::WriteFrustum(frustum, name));
    const auto lines = body();
    ASSERT_EQ(lines.size(), 10u + 13u);
    const auto corners8 = frustum.GetRefVertices();
    ASSERT_EQ(corners8.size(), 8u);
    for (std::size_t i = 0; i < 8; ++i)
        EXPECT_EQ(lines[i], corners8[i].ToString(false).utf8_string() + "\t0\t0\t0");
    EXPECT_EQ(lines[8], "1.000000\t2.000000\t10.000000\t0\t0\t0");
    EXPECT_EQ(lines[9], "1.000000\t2.000000\t0.000000\t0\t0\t0");
    std::string edges;
    for (std::size_t i = 10; i < lines.size(); ++i) edges += lines[i] + ",";
    EXPECT_EQ(edges, "0 1,0 2,1 3,2 3,0 4,1 5,2 6,3 7,4 5,4 6,5 7,6 7,8 9,");
}

TEST_F(PlyIOTest, MergesMeshesByMovingTheirIndices) {
    const auto [points, faces] = PlyIO::MergeVerticesFacesList(
        {{corners(3), {{0, 1, 2}}}, {{}, {}}, {corners(4), {{0, 1, 2, 3}, {3, 2, 1}}}});
    EXPECT_EQ(points.size(), 7u);
    EXPECT_EQ(points[3].x, 0);
    EXPECT_EQ(faces, (PlyIO::Faces{{0, 1, 2}, {3, 4, 5, 6}, {6, 5, 4}}));
}

TEST_F(PlyIOTest, ReadsVerticesBack) {
    std::vector<VpcPoint3D> points;
    VpcBoundingBoxAxisAligned box;
    const auto read = [&](const std::string& text) {
        writeBytes(file, text);
        testing::internal::CaptureStdout();
        const bool done = PlyIO::Read(name, points, box);
        return (done ? "" : "failed: ") + testing::internal::GetCapturedStdout();
    };
    const std::string head =
        "ply\r\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\n"
        "property float z\nelement face 2\nproperty list uchar int vertex_index\nend_header\n";
    EXPECT_EQ(read(head + "1 2 3\n-1.5 1e1 0 7 7 7\r\nnan 0 0\n3 0 1 2\n3 0 1 2\n3 0 0 0\n"),
              "After reading ply file, now has 3 points and 2 faces.\n");
    EXPECT_EQ(joined(box.minPoint.x, box.minPoint.y, box.minPoint.z), "-1.5 2 0");
    EXPECT_EQ(joined(box.maxPoint.x, box.maxPoint.y, box.maxPoint.z), "1 10 3");
    // Appends; a file that ends early gives what it holds.
    EXPECT_EQ(read(head + "9 9\n"), "After reading ply file, now has 4 points and 0 faces.\n");
    EXPECT_EQ(describe(points[3]), "9 9 0 / 0 0 0 / 0 / -1 / 1");
    EXPECT_EQ(read(""), "After reading ply file, now has 4 points and 0 faces.\n");
    EXPECT_EQ(box.minPoint.x, 9);

    PlyIO::WriteVertices(corners(5), name);
    points.clear();
    EXPECT_EQ(read(written()), "After reading ply file, now has 5 points and 0 faces.\n");
    EXPECT_EQ(points[4].z, 2);
    EXPECT_FALSE(PlyIO::Read(toWx(folder.path() / "none.ply"), points, box));
}

}  // namespace
