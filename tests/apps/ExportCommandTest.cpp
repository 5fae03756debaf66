#include <cmath>

#include "io/FileIoFactory.h"
#include "support/ReaderTools.h"
#include "support/TreeImage.h"
#include "support/ViewedTest.h"

namespace vpc::test {
namespace {

/// Coordinates and colour of a point, rounded as far as the formats keep them.
using Row = std::array<long long, 6>;

template <class Points>
std::vector<Row> sortedRows(const Points& points) {
    std::vector<Row> rows;
    for (const auto& p : points)
        rows.push_back({std::llround(p.x * 1e6), std::llround(p.y * 1e6), std::llround(p.z * 1e6),
                        p.red, p.green, p.blue});
    std::sort(rows.begin(), rows.end());
    return rows;
}

class ExportCommandTest : public ViewedTest {
protected:
    ExportCommandTest() : ViewedTest({cloud()}) {}

    /// Coordinates that nine significant digits hold.
    static std::vector<PointRecord> cloud() {
        auto points = makeCloud({CloudShape::Uniform, 3000});
        for (PointRecord& p : points)
            for (double* value : {&p.x, &p.y, &p.z}) *value = std::round(*value * 1e6) / 1e6;
        return points;
    }
    /// What a reader of the library finds in an exported file.
    std::vector<Row> exported(std::string name, const std::string& options = "") const {
        expectDone("export t.vpt -o " + name + options);
        if (name == "o.ply") {  // the lines of its vertices are a PTS file's
            const std::string text = read(name);
            const std::string lines = text.substr(text.find("end_header\n") + 11);
            name = "ply.pts";
            write(name,
                  std::to_string(std::count(lines.begin(), lines.end(), '\n')) + "\n" + lines);
        }
        const wxString path = toWx(folder.file(name));
        const auto reader = FileIoFactory::Create(FileIoFactory::GetDataFormat(path), 1000);
        return sortedRows(readAll(*reader, folder.file(name)).points);
    }
};

TEST_F(ExportCommandTest, WritesALevelInEveryFormat) {
    EXPECT_EQ(run("export t.vpt -o o.pts").out, "o.pts: 3000 points\n");
    for (const char* name : {"o.pts", "o.ptx", "o.ply", "\u0161.PTS"}) {
        EXPECT_EQ(exported(name), sortedRows(scan)) << name;
        EXPECT_EQ(exported(name, " --level 1"), sortedRows(tree.pointsOf(1))) << name;
        const auto coloured = exported(name, " --coloured-by elevation");
        ASSERT_EQ(coloured.size(), 3000U);
        const auto [low, high] = std::minmax_element(coloured.begin(), coloured.end(),
                                                     [](auto& a, auto& b) { return a[2] < b[2]; });
        for (std::size_t c = 0; c < 3; ++c) {  // from blue to red
            EXPECT_NEAR(static_cast<double>((*low)[3 + c]), c == 2 ? 127.5 : 0, 1) << name;
            EXPECT_NEAR(static_cast<double>((*high)[3 + c]), c == 0 ? 131.5 : 0, 1) << name;
        }
    }
}

TEST_F(ExportCommandTest, RefusesWhatCannotBe) {
    const std::string from = "export t.vpt -o ";
    expectFailure(from + "o.las", 2, "must end in .pts, .ptx or .ply");
    expectFailure(from + ".", 2, "");
    expectFailure(from + "o.pts --level 99", 2, "--level takes a level of the file, 0 to ");
    expectFailure(from + "o.pts --level -1", 2, "");
    expectFailure(from + "o.pts --coloured-by smell", 2, "elevation");
    expectFailure(from + "none/o.pts", 1, "'none/o.pts' cannot be written");
    expectFailure("export none.vpt -o o.pts", 1, "'none.vpt' cannot be read");
    const std::string whole = read("t.vpt");
    write("t.vpt", whole.substr(0, whole.size() - 1));
    expectFailure(from + "o.pts", 1, "ends before the points of node");
    // Each of two nodes has room for its points, both together have not.
    TreeImage crowded({});
    for (const std::size_t n : {1U, 2U})
        for (const auto& [member, value] : {std::pair(6U, Word{20}), {13U, 0}})
            crowded.patch(crowded.nodes[n].members[member], value);
    write("t.vpt", crowded.bytes);
    expectFailure(from + "o.pts --level 1", 1, "claims more points than it has room for");
    write("t.vpt", whole);
    write("o.pts", "older");
    expectFailure(from + "o.pts", 1, "'o.pts' cannot be written", 20000);
    EXPECT_EQ(read("o.pts"), "older");
    EXPECT_TRUE(folder.holdsOnly({"o.pts", "t.ptx", "t.vpt"}));
}

}  // namespace
}  // namespace vpc::test
