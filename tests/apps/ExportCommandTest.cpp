#include <charconv>
#include <cmath>
#include <functional>

#include "support/TreeImage.h"
#include "support/ViewedTest.h"

namespace vpc::test {
namespace {

using testing::HasSubstr;

/// What has to survive an export, bit by bit and sorted: coordinates, colours, intensities.
std::vector<std::string> kept(std::vector<PointRecord> points) {
    std::vector<std::string> bytes;
    for (PointRecord& p : points) {
        p.scannerDistance = 1;
        p.markerId = p.sourceIndex = 0;
        // Minus zero is zero.
        for (double* value : {&p.x, &p.y, &p.z, &p.intensity}) *value += 0.0;
        bytes.push_back(p.bytes());
    }
    std::sort(bytes.begin(), bytes.end());
    return bytes;
}

/// A PLY file as its own header describes it.
std::vector<PointRecord> pointsOfPly(const std::string& file) {
    std::istringstream header(file);
    std::size_t count = 0;
    bool wide = false, isFloat = false;
    for (std::string line; std::getline(header, line) && line != "end_header";) {
        if (line.find("element vertex ") == 0) count = std::stoul(line.substr(15));
        wide = wide || line == "property ushort red";
        isFloat = isFloat || line == "property float intensity";
    }
    const char* next = file.data() + header.tellg();
    const auto take = [&]<class T>(T value) {
        std::memcpy(&value, next, sizeof value);
        next += sizeof value;
        return value;
    };
    std::vector<PointRecord> points(count);
    for (PointRecord& p : points) {
        for (double* value : {&p.x, &p.y, &p.z}) *value = take(0.0);
        for (std::uint16_t* c : {&p.red, &p.green, &p.blue})
            *c = wide ? take(std::uint16_t{}) : take(std::uint8_t{});
        p.intensity = isFloat ? take(0.0F) : take(0.0);
    }
    EXPECT_EQ(next, file.data() + file.size());
    return points;
}

class ExportCommandTest : public ViewedTest {
protected:
    ExportCommandTest() : ViewedTest({makeCloud({CloudShape::Uniform, 3000})}) {}

    static std::vector<PointRecord> deepest(const TreeFile& file) {
        return file.pointsOf(file.levels.size() - 1);
    }
    std::vector<PointRecord> prepared(const std::string& file) const {
        expectDone("prepare --quiet -o again.vpt --max-points 200 " + file);
        return deepest(TreeFile(read("again.vpt")));
    }
    /// The points of an exported file: prepared anew but for PLY, which is no scan.
    std::vector<PointRecord> pointsOf(const std::string& name) const {
        if (name == "o.ply") return pointsOfPly(read(name));
        if (name != "o.xyz" && name != "o.csv") return prepared(name);
        std::string lines = read(name);
        if (name == "o.csv") {
            EXPECT_EQ(lines.find("x,y,z,intensity,red,green,blue\n"), 0U);
            lines.erase(0, lines.find('\n') + 1);
            std::replace(lines.begin(), lines.end(), ',', ' ');
        }
        const auto count = std::count(lines.begin(), lines.end(), '\n');
        write("counted.pts", std::to_string(count) + "\n" + lines);
        return prepared("counted.pts");
    }
    std::vector<PointRecord> exported(const std::string& options) const {
        expectDone("export t.vpt --force -o o.ply " + options);
        return pointsOfPly(read("o.ply"));
    }

    const std::vector<std::string> outputs = {"o.las", "o.ply", "o.pts", "o.ptx", "o.xyz", "o.csv"};
};

TEST_F(ExportCommandTest, GivesThePointsOfEveryScanBack) {
    auto far = makeCloud({CloudShape::Uniform, 2500, 3});
    for (PointRecord& p : far) p.x = std::round(p.x * 1e3) / 1e3 + 5e6, p.y *= -1e-7, p.z += 0.1;
    // The readers of text with an empty cell for 0, 0, 0 must find all of these.
    auto origin = makeCloud({CloudShape::Duplicates, 600, 4});
    for (std::size_t i = 0; i < origin.size(); i += 3) origin[i].x = origin[i].y = origin[i].z = 0;
    const auto wide = makeCloud({CloudShape::Clusters, 2500, 5, 65535});
    auto shifted = wide, lowest = wide;
    for (PointRecord& p : shifted) p.x += 458000, p.y += 458100, p.z += 458000;
    const double odd = -127.39066192640913;
    lowest.push_back({odd, odd, odd, 1, 2, 3, 4});
    const std::string las = folder.file("s.las"), pts = folder.file("s.pts");
    const std::array<double, 12> turned{0.6, 0.8, 0, -0.8, 0.6, 0, 0, 0, 1, 458e3, 5428e3, 7};
    const std::vector<std::function<std::string()>> scans = {
        [&] {
            return writeLas(las, {2, 3, 0, 0.001, 458000}, shifted), "s.las";
        },
        // The smallest coordinates are this scan's offset.
        [&] {
            return writeLas(las, {4, 7, 2, 0.01, odd}, lowest), "s.las";
        },
        [&] {
            return writeLas(las, {2, 1, 0, 0.0025, 0}, wide), "s.las";
        },
        [&] { return writePts(pts, 3, {far}), "s.pts"; },
        [&] { return writePts(pts, 4, {origin}), "s.pts"; },
        [&] {
            return writePts(pts, 6, {wide, far}), "s.pts";
        },
        [&] {
            return writePtx(folder.file("s.ptx"), {{wide, turned, 7}, {origin}}), "s.ptx";
        }};
    for (const auto& writeScan : scans) {
        const std::string from = writeScan();
        const auto expected = prepared(from);
        const std::string source = from + " " + std::to_string(expected.size());
        std::filesystem::rename(folder.file("again.vpt"), folder.file("s.vpt"));
        for (const std::string& name : outputs) {
            std::filesystem::remove(folder.file(name));
            const ProgramResult result = run("export s.vpt -o " + name);
            EXPECT_EQ(result.status, 0) << name << result.err;
            EXPECT_EQ(result.out, name + ": " + std::to_string(expected.size()) + " points\n");
            if (name == "o.las" && from != "s.las") {
                EXPECT_THAT(result.err, HasSubstr(" off by up to "));
                continue;
            }
            EXPECT_EQ(result.err, "");
            EXPECT_EQ(kept(pointsOf(name)), kept(expected)) << source << " as " << name;
        }
    }
}

TEST_F(ExportCommandTest, WritesColoursOfSixteenBitsWhole) {
    // Where the first points have narrow colours, the tree file keeps wide ones as they are.
    writePts(folder.file("s.pts"), 7, {scan, makeCloud({CloudShape::Line, 500, 1, 65535})});
    const auto expected = prepared("s.pts");
    expectDone("export again.vpt -o o.ply");
    EXPECT_EQ(kept(pointsOfPly(read("o.ply"))), kept(expected));
    EXPECT_THAT(read("o.ply").substr(0, 300), HasSubstr("ushort"));
    EXPECT_THAT(run("export again.vpt -o - --format csv").out,
                HasSubstr(std::string(",").append(std::to_string(expected.back().red))));
}

TEST_F(ExportCommandTest, KeepsTheUnitOrSaysThatItIsLost) {
    expectDone("prepare --quiet --unit ft -o feet.vpt t.ptx");
    expectDone("export feet.vpt -o feet.las");
    EXPECT_THAT(run("prepare -o again.vpt feet.las").out, HasSubstr("unit    Feet"));
    EXPECT_THAT(run("export feet.vpt -o feet.pts").err, HasSubstr("give --unit Feet when"));
}

TEST_F(ExportCommandTest, LasTellsHowFarItsCoordinatesAreOff) {
    const ProgramResult result = run("export t.vpt -o o.las");
    const std::string said = "so they are off by up to ";
    ASSERT_THAT(result.err, HasSubstr(said));
    double largest = 0;
    std::from_chars(result.err.data() + result.err.find(said) + said.size(),
                    result.err.data() + result.err.size(), largest);
    EXPECT_GT(largest, 1e-9);
    EXPECT_LT(largest, 1e-7) << "the finest scale for a hundred units";
    const auto order = [](auto& a, auto& b) { return a.x < b.x; };
    auto expected = deepest(tree), found = prepared("o.las");
    std::sort(expected.begin(), expected.end(), order);
    std::sort(found.begin(), found.end(), order);
    ASSERT_EQ(found.size(), expected.size());
    double off = 0;
    for (std::size_t i = 0; i < found.size(); ++i) {
        off = std::max(off, std::abs(found[i].x - expected[i].x));
        EXPECT_LE(std::abs(found[i].intensity - expected[i].intensity), 0.5);
    }
    EXPECT_LE(off, 1.01 * largest);
    EXPECT_GT(off, largest / 10);
}

TEST_F(ExportCommandTest, CutsAsTheViewDoes) {
    const std::string cuts =
        "--matrix 1,0,0,0,0,0,-1,0,0,1,0,0,0,0,0,1 --section 5,-10,0,1,-2,0.5 "
        "--clip-circle outside:50,-10,5 --clip-circle 40,-10,40 --clip-polygon "
        "0,-90;100,-80;100,0;0,0 ";
    for (const std::string level : {"", "--level 1"}) {
        std::vector<Doubles3> seen, written;
        for (const ShownPoint& p : shown(cuts + "--parallel " + level)) seen.push_back(p.at);
        for (const PointRecord& p : exported(cuts + level)) written.push_back({p.x, -p.z, p.y});
        EXPECT_GT(seen.size(), 30U);
        EXPECT_EQ(written, seen);
    }
    EXPECT_EQ(kept(exported("--level 0")), kept(tree.pointsOf(0)));
    const auto coloured = exported("--coloured-by elevation");
    const auto [low, high] = std::minmax_element(coloured.begin(), coloured.end(),
                                                 [](auto& a, auto& b) { return a.z < b.z; });
    EXPECT_TRUE(low->red == 0 && low->green == 0 && low->blue == 128);
    EXPECT_TRUE(high->red == 131 && high->green == 0 && high->blue == 0);
    expectDone("export t.vpt -o o.xyz");
    EXPECT_EQ(run("export t.vpt -o -").out, read("o.xyz")) << "and nothing else";
    expectDone("export t.vpt -o text --format PTS");
    EXPECT_EQ(run("export t.vpt -o - --format pts").out, read("text"));
}

TEST_F(ExportCommandTest, ReplacesNothingUnlessItIsForcedTo) {
    for (const std::string& there : outputs) {
        const std::string line = "export t.vpt --level 0 -o " + there;
        expectDone(line);
        expectFailure(line, 1, "'" + there + "' is there already; choose another name, or give");
        expectDone(line + " --force");
        // Other commands, whose outputs may be made anew, know what is not of theirs.
        std::filesystem::copy(folder.file(there), folder.file(there + ".png"));
        expectFailure("view t.vpt --image " + there + ".png", 1, "not a picture");
        std::filesystem::copy(folder.file(there), folder.file(there + ".vpt"));
        expectFailure("prepare o.las -o " + there + ".vpt", 1, "not a point tree file");
    }
    expectFailure("export t.vpt -o ./t.vpt --format pts --force", 1, "the tree file itself");
    write("notes.txt", "Call Jane\nabout 12 things\n");
    expectFailure("view t.vpt --points notes.txt", 1, "is there already");
    expectFailure("prepare --log notes.txt -o a.vpt o.las", 1, "is a text, not a log");
    write("empty.pts", "");
    expectDone("export t.vpt -o empty.pts");
    expectFailure("sample o.las", 1, "is there already");
}

TEST_F(ExportCommandTest, RefusesWhatCannotBe) {
    const std::string from = "export t.vpt -o ";
    expectFailure(from + "o.txt", 2, "must end in .las, .ply, .pts, .ptx, .xyz or .csv");
    expectFailure(from + ".", 2, "");
    expectFailure(from + "- --format las", 2, "only text goes to standard output");
    expectFailure(from + "o.pts --level 99", 2, "--level takes a level of the file, 0 to ");
    expectFailure(from + "o.pts --level -1", 2, "");
    expectFailure(from + "o.pts --coloured-by smell", 2, "elevation");
    expectFailure(from + "none/o.pts", 1, "'none/o.pts' cannot be written");
    expectFailure("export none.vpt -o o.pts", 1, "'none.vpt' cannot be read");
    const std::string whole = read("t.vpt");
    write("t.vpt", whole.substr(0, whole.size() - 1));
    expectFailure(from + "o.pts", 1, "'t.vpt' ends before the points of node");
    // Each of two nodes has room for its points, both together have not.
    TreeImage crowded({});
    for (const std::size_t n : {1U, 2U})
        for (const auto& [member, value] : {std::pair(6U, Word{20}), {13U, 0}})
            crowded.patch(crowded.nodes[n].members[member], value);
    write("t.vpt", crowded.bytes);
    expectFailure(from + "o.pts --level 1", 1, "claims more points than it has room for");
    write("t.vpt", whole);
    write("o.pts", "0\n");
    expectFailure(from + "o.pts --force", 1, "'o.pts' cannot be written", 20000);
    EXPECT_EQ(read("o.pts"), "0\n");
    EXPECT_TRUE(folder.holdsOnly({"o.pts", "t.ptx", "t.vpt"}));
}

}  // namespace
}  // namespace vpc::test
