#pragma once

#include <gtest/gtest.h>

#include <charconv>
#include <sstream>
#include <string>
#include <vector>

#include "support/PrepareRun.h"
#include "support/ProgramRun.h"
#include "support/ScanFiles.h"
#include "support/TreeFile.h"

namespace vpc::test {

/// A point as `vpc view --points` writes it.
struct ShownPoint {
    std::array<double, 3> at{};
    std::array<int, 3> colour{};
    double size = 0;

    bool operator==(const ShownPoint&) const = default;
    auto operator<=>(const ShownPoint&) const = default;
};

/// Reads lines of "x y z red green blue size", whatever the locale; throws for any other line.
inline std::vector<ShownPoint> shownPoints(const std::string& text) {
    std::vector<ShownPoint> points;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::vector<double> values;
        for (std::string word; words >> word;) {
            values.push_back(0);
            const char* const end = word.data() + word.size();
            if (std::from_chars(word.data(), end, values.back()).ptr != end)
                throw std::runtime_error("no number: " + word);
        }
        if (values.size() != 7) throw std::runtime_error("no point: " + line);
        points.push_back({{values[0], values[1], values[2]},
                          {static_cast<int>(values[3]), static_cast<int>(values[4]),
                           static_cast<int>(values[5])},
                          values[6]});
    }
    return points;
}

/// A scan, its tree file "t.vpt" and the program beside it.
class ViewedTree {
public:
    /// Writes `points` as "t.pts" and prepares it.
    explicit ViewedTree(const std::vector<PointRecord>& points,
                        const ReferenceSettings& settings = {6, false, 100, 10}) {
        scan = writePts(work.scan("t.pts"), 7, {points});
        const auto result =
            prepare({work.scan("t.pts")}, work.work(), work.scan("t.vpt"), settings);
        EXPECT_TRUE(result.success) << result.message;
    }

    ProgramResult run(const std::vector<std::string>& arguments) const {
        return runProgram(arguments, work.folder.path());
    }
    /// `vpc view t.vpt` with further arguments.
    ProgramResult view(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"view", "t.vpt"});
        return run(arguments);
    }
    /// What such a view shows.
    std::vector<ShownPoint> shown(std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"--points", "shown.txt"});
        const ProgramResult result = view(arguments);
        EXPECT_EQ(result.status, 0) << result.err;
        return shownPoints(read("shown.txt"));
    }
    std::string read(const std::string& name) const { return readBytes(work.scan(name)); }
    TreeFile tree() const { return TreeFile(read("t.vpt")); }
    /// The points of one level that `keep` lets through, in the order of the file, as they are
    /// shown in the scan's colours.
    template <class Keep>
    std::vector<ShownPoint> stored(std::size_t level, const Keep& keep) const {
        std::vector<ShownPoint> points;
        const TreeFile file = tree();
        for (const TreeNode& node : file.levels.at(level))
            for (const PointRecord& p : node.points)
                if (keep(p))
                    points.push_back({{p.x, p.y, p.z},
                                      {p.red & 255, p.green & 255, p.blue & 255},
                                      std::max(p.scannerDistance, 1.0)});
        return points;
    }

    PrepareFolder work{"Stra\u00dfe \u6771"};
    /// The points that the tree was made of.
    std::vector<PointRecord> scan;
};

}  // namespace vpc::test
