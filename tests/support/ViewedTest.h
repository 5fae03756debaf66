#pragma once

#include <algorithm>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

#include "support/ProgramRun.h"

namespace vpc::test {

/// A point as `vpc view --points` writes it.
struct ShownPoint {
    Doubles3 at{};
    std::array<int, 3> colour{};
    double size = 1;

    auto operator<=>(const ShownPoint&) const = default;
};

inline ShownPoint shownAs(const PointRecord& p) {
    return {{p.x, p.y, p.z}, {p.red & 255, p.green & 255, p.blue & 255}, p.scannerDistance};
}

/// A tree file "t.vpt", and the program to look at it.
class ViewedTest : public ProgramTest {
protected:
    explicit ViewedTest(const PtxScan& content)
        : scan(folder.prepareTree(content, {6, false, 100, 10})) {}

    /// What a view with such options shows.
    std::vector<ShownPoint> shown(const std::string& options) const {
        expectDone("view t.vpt --force --points shown.txt " + options);
        std::istringstream text(read("shown.txt"));
        text.imbue(std::locale::classic());
        std::vector<ShownPoint> points;
        ShownPoint p;
        while (text >> p.at[0] >> p.at[1] >> p.at[2] >> p.colour[0] >> p.colour[1] >> p.colour[2] >>
               p.size)
            points.push_back(p);
        EXPECT_TRUE(text.eof());
        return points;
    }
    /// The points of the deepest level, in the order of the file, as they are shown.
    std::vector<ShownPoint> stored() const {
        const auto points = tree.pointsOf(tree.levels.size() - 1);
        std::vector<ShownPoint> result(points.size());
        std::transform(points.begin(), points.end(), result.begin(), shownAs);
        return result;
    }

    const std::vector<PointRecord> scan;
    const TreeFile tree = folder.tree();
};

}  // namespace vpc::test
