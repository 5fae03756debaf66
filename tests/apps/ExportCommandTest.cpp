#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "io/FileIoFactory.h"
#include "support/ReaderTools.h"
#include "support/ViewedTree.h"

namespace {

using testing::HasSubstr;
using vpc::test::PointRecord;
using vpc::test::ProgramResult;
using vpc::test::ViewedTree;

/// Coordinates and colour of a point, rounded as far as the formats keep them.
using Rounded = std::array<long long, 6>;

Rounded rounded(double x, double y, double z, int red, int green, int blue) {
    return {std::llround(x * 1e6), std::llround(y * 1e6), std::llround(z * 1e6), red, green, blue};
}

template <class Points>
std::vector<Rounded> sorted(const Points& points) {
    std::vector<Rounded> values;
    for (const auto& p : points) values.push_back(rounded(p.x, p.y, p.z, p.red, p.green, p.blue));
    std::sort(values.begin(), values.end());
    return values;
}

class ExportCommandTest : public testing::Test {
protected:
    ProgramResult exportTo(const std::string& output,
                           const std::vector<std::string>& options = {}) const {
        std::vector<std::string> arguments = {"export", "t.vpt", "-o", output};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return viewed.run(arguments);
    }
    /// The points that a reader of the library finds in a PTS or PTX file.
    std::vector<VpcPoint3D> readScan(const std::string& name) const {
        const wxString path = vpc::test::toWx(viewed.work.scan(name));
        const auto reader = FileIoFactory::Create(FileIoFactory::GetDataFormat(path), 1000);
        return vpc::test::readAll(*reader, viewed.work.scan(name)).points;
    }
    /// The vertices of a PLY file.
    std::vector<PointRecord> readPly(const std::string& name) const {
        std::string text = viewed.read(name);
        const std::size_t start = text.find("end_header\n");
        if (start == std::string::npos) return {};
        std::vector<PointRecord> points;
        std::istringstream lines(text.substr(start + 11));
        for (std::string line; std::getline(lines, line);) {
            // The program's own list of points differs by the size at the end.
            const auto shown = vpc::test::shownPoints(line + " 1").at(0);
            PointRecord& p = points.emplace_back();
            p.x = shown.at[0], p.y = shown.at[1], p.z = shown.at[2];
            p.red = static_cast<std::uint16_t>(shown.colour[0]);
            p.green = static_cast<std::uint16_t>(shown.colour[1]);
            p.blue = static_cast<std::uint16_t>(shown.colour[2]);
        }
        return points;
    }

    /// Coordinates that nine significant digits hold.
    static std::vector<PointRecord> cloud() {
        auto points = vpc::test::makeCloud({vpc::test::CloudShape::Uniform, 3000});
        for (PointRecord& p : points)
            for (double* value : {&p.x, &p.y, &p.z}) *value = std::round(*value * 1e6) / 1e6;
        return points;
    }

    const ViewedTree viewed{cloud()};
};

TEST_F(ExportCommandTest, WritesEveryPointOfTheScanInEveryFormat) {
    const auto expected = sorted(viewed.scan);
    for (const char* name : {"o.pts", "o.ptx", "o.ply", "\u0161.PTS"}) {
        const ProgramResult result = exportTo(name);
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out, std::string(name) + ": 3000 points\n");
        if (std::string(name) == "o.ply") continue;
        EXPECT_EQ(sorted(readScan(name)), expected) << name;
    }
    EXPECT_EQ(sorted(readPly("o.ply")), expected);
}

TEST_F(ExportCommandTest, WritesOneLevel) {
    const auto tree = viewed.tree();
    ASSERT_GE(tree.levels.size(), 3U);
    for (std::size_t level = 0; level < tree.levels.size(); ++level) {
        std::vector<PointRecord> expected;
        for (const auto& node : tree.levels[level])
            expected.insert(expected.end(), node.points.begin(), node.points.end());
        ASSERT_EQ(exportTo("o.ply", {"--level", std::to_string(level)}).status, 0);
        EXPECT_EQ(sorted(readPly("o.ply")), sorted(expected)) << level;
    }
}

TEST_F(ExportCommandTest, ColoursByElevation) {
    const auto [low, high] =
        std::minmax_element(viewed.scan.begin(), viewed.scan.end(),
                            [](const auto& a, const auto& b) { return a.z < b.z; });
    for (const std::string name : {"o.pts", "o.ptx", "o.ply"}) {
        ASSERT_EQ(exportTo(name, {"--coloured-by", "elevation"}).status, 0);
        std::size_t bluish = 0, reddish = 0;
        const auto check = [&](const auto& points) {
            ASSERT_EQ(points.size(), 3000U);
            for (const auto& p : points) {
                const double height = (p.z - low->z) / (high->z - low->z);
                if (height < 0.3) bluish += p.blue > 100 && p.red == 0;
                if (height > 0.7) reddish += p.red > 100 && p.blue == 0;
            }
        };
        name == "o.ply" ? check(readPly(name)) : check(readScan(name));
        const auto share = [&](double from, double to) {
            return std::count_if(viewed.scan.begin(), viewed.scan.end(), [&](const auto& p) {
                const double height = (p.z - low->z) / (high->z - low->z);
                return height > from && height < to;
            });
        };
        EXPECT_EQ(bluish, share(-1, 0.3)) << name;
        EXPECT_EQ(reddish, share(0.7, 2)) << name;
    }
}

TEST_F(ExportCommandTest, RefusesWhatCannotBe) {
    for (const auto& [options, status, text] :
         std::vector<std::tuple<std::vector<std::string>, int, std::string>>{
             {{"o.las"}, 2, "must end in .pts, .ptx or .ply"},
             {{"o.pts", "--level", "99"}, 2, "--level takes a level of the file, 0 to "},
             {{"o.pts", "--level", "-1"}, 2, ""},
             {{"o.pts", "--coloured-by", "smell"}, 2, "elevation"},
             {{"none/o.pts"}, 1, "'none/o.pts' cannot be written"},
             {{"."}, 2, ""}}) {
        const ProgramResult result = exportTo(options[0], {options.begin() + 1, options.end()});
        EXPECT_EQ(result.status, status) << options[0];
        EXPECT_THAT(result.err, HasSubstr(text));
    }
    const ProgramResult missing = viewed.run({"export", "none.vpt", "-o", "o.pts"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.err, HasSubstr("'none.vpt' cannot be read"));
}

TEST_F(ExportCommandTest, AFullDiskLeavesTheOlderFile) {
    vpc::test::writeBytes(viewed.work.scan("o.pts"), "older");
    vpc::test::ProgramRun limited({"export", "t.vpt", "-o", "o.pts"}, viewed.work.folder.path(),
                                  20000);
    const ProgramResult result = limited.wait();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("'o.pts' cannot be written"));
    EXPECT_EQ(viewed.read("o.pts"), "older");
    EXPECT_TRUE(viewed.work.holdsOnly({"o.pts", "t.pts", "t.vpt"}));
}

}  // namespace
