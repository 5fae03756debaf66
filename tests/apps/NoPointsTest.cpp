#include "support/ViewedTest.h"

namespace vpc::test {
namespace {

using testing::HasSubstr;

/// Points between 0 and 100 along every axis.
class NoPointsTest : public ViewedTest {
protected:
    NoPointsTest() : ViewedTest({makeCloud({CloudShape::Corner, 4000})}) {
        expectDone("prepare --quiet --max-points 1000 -o t.vpt t.ptx");
    }

    /// Expects that a view is made and that a pick fails, both with `text`.
    void expectReason(const std::string& options, const std::string& text) const {
        const ProgramResult view = run("view t.vpt --image o.png " + options);
        EXPECT_EQ(view.status, 0) << options;
        EXPECT_THAT(view.err, HasSubstr(text)) << options;
        expectFailure("pick t.vpt --pixel 640,400 " + options, 1, text);
    }
};

TEST_F(NoPointsTest, AreNeverSilent) {
    const std::string box = "within -", elsewhere = "the camera sees none of the points";
    expectReason("--eye 50,50,500 --target 50,50,600", elsewhere);
    expectReason("--eye 50,50,500 --target 50,50,500", elsewhere);
    // From the edge of the box to the sky: nodes reach into this view, but none of their points.
    expectReason("--eye 50,50,99.99 --target 50,50,200 --field 1,1", elsewhere);
    expectReason("--eye 50,50,500 --target 50,50,600", box);
    const std::string cut = "--clip-circle 1050,50,5";
    expectReason(cut, "the sections and clipping regions leave none of the 4000 points");
    expectReason(cut, box);
    expectFailure("export t.vpt -o o.pts " + cut, 1, "leave none of the 4000 points; all points");
    expectFailure("export t.vpt -o o.pts " + cut, 1, box);
    expectReason(cut + " --matrix 1,0,0,5e6,0,1,0,0,0,0,1,0,0,0,0,1", "within 49999");

    const TreeFile prepared(read("t.vpt"));
    const std::size_t coarsest = prepared.pointsOf(0).size();
    const std::string least = std::to_string(coarsest + 1);
    const std::string budget = "--budget " + std::to_string(coarsest);
    expectReason(budget, "give --budget " + least + " or more");
    EXPECT_EQ(run("view t.vpt --report --budget " + least).err, "");
    const std::string level = run("view t.vpt --report --level 1 --budget " + least).err;
    EXPECT_THAT(level, HasSubstr("level 0 is shown in place of 1: level 1 has " +
                                 std::to_string(prepared.pointsOf(1).size()) + " points"));
    EXPECT_EQ(run("view t.vpt --report --level 1").err, "");
    TreeFile empty = tree;
    empty.levels.resize(1);
    empty.levels[0][0].points.clear();
    empty.levels[0][0].grid = {1, 1, 1};
    write("t.vpt", empty.bytes());
    expectReason("", "'t.vpt' holds no points");
    expectFailure("export t.vpt -o o.pts", 1, "'t.vpt' holds no points");
    EXPECT_FALSE(folder.names().contains("o.pts"));
}

}  // namespace
}  // namespace vpc::test
