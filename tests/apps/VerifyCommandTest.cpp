#include <functional>
#include <limits>
#include <random>

#include "support/ProgramRun.h"
#include "support/TreeImage.h"

namespace vpc::test {
namespace {

using Word = TreeImage::Word;

class VerifyCommandTest : public ProgramTest {
protected:
    ProgramResult verify(const TreeImage& tree) const {
        write("t.vpt", tree.bytes);
        return run("verify t.vpt");
    }

    const TreeImage image{{U"a.las"}};
};

TEST_F(VerifyCommandTest, FindsEveryKindOfFault) {
    EXPECT_EQ(verify(image).out, "no faults found\n");
    EXPECT_EQ(verify(image).status, 0);
    const auto& nodes = image.nodes;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        const char* finding;
        std::function<void(TreeImage&)> plant;
    };
    const auto at = [](Word position, auto value) {
        return [=](TreeImage& i) { i.patch(position, value); };
    };
    /// A member of a record, `further` bytes on.
    const auto member = [&](std::size_t node, std::size_t number, auto value, Word further = 0) {
        return at(nodes[node].members[number] + further, value);
    };
    const Word sizes = 119 + 8 + 8 + 5 * 4;  // behind the one source name
    const std::vector<Case> cases = {
        {"the version is 8", at(0, Word{8})},
        {"the tree type is", at(8, Word{1} << 32)},
        {"minimum point distance is not", at(16, nan)},
        {"the header says 6", at(24, Word{6})},
        {"the flag is not 0", at(32, true)},
        {"largest intensity is not", at(39, nan)},
        {"node records are said to begin at", at(103, Word{1})},
        {"point blocks are said to begin at", at(111, Word{1})},
        {"source names, more than", at(119, Word{1} << 40)},
        {"a point record takes 55", at(sizes, Word{55})},
        {"levels, more than", at(sizes + 8, ~Word{0})},
        {"says it is of level 7", member(1, 0, Word{7})},
        {"minimum point distance that is no", member(2, 1, -1.0)},
        {"path that does not begin at the root", member(0, 2, Word{1})},
        {"does not lead over its parent", member(3, 2, Word{1}, 24)},
        {"cell that its parent's grid does not have", member(2, 2, Word{2}, 24)},
        {"another grid for its parent", member(1, 3, Word{3}, 24)},
        {"box that is not one", member(3, 4, nan)},
        {"reaches out of its parent's box", member(1, 4, -0.5)},
        {"does not fill its cell", member(1, 5, 1.5)},
        {"node 0 of level 2 has 4 points, its point block 5", member(3, 6, Word{4})},
        {"has more points (9) than its children", member(0, 6, Word{9})},
        {"has points and no children", member(2, 6, Word{1})},
        {"does not fit in the file", member(3, 9, Word{1} << 61)},
        {"grid of children without cells", member(3, 9, Word{0})},
        {"cell widths that do not divide", member(0, 10, 1.0)},
        {"says its record is at", member(2, 11, Word{5})},
        {"has its point block at 77, expected at", member(2, 12, Word{77})},
        {"point block beyond the end", member(2, 12, ~Word{0} - 3)},
        {"and its point list at 78", member(2, 13, Word{78})},
        {"is a root and names a parent", member(0, 14, Word{5})},
        {"names a parent record at 9", member(3, 14, Word{9})},
        {"has its parent's point block at 9", member(3, 15, Word{9})},
        {"has its child 1 at 9 and", member(0, 16, Word{9}, 16)},
        {"has its child 1 at", member(0, 16, Word{9}, 24)},
        {"1 cells, names 0 children",
         [&](TreeImage& i) {
             member(1, 16, Word{0})(i);
             member(1, 16, Word{0}, 8)(i);
         }},
        {"deepest level and names children", member(3, 16, Word{5})},
        {"has a point block for level 6", at(nodes[1].block, Word{6})},
        {"its point block 6", at(nodes[1].block + 8, Word{6})},
        {"1 of 5 points of node 0 of level 2 lie outside its box, the first is point 3",
         at(nodes[3].block + 16 + 54 * 3, 2.0000001)},
        // The block repeats the count, and the next block does not stand behind so many points.
        {"2 faults found", member(1, 6, Word{4})},
        {"1 fault found", member(2, 13, Word{4})},
        {"1 of 3 points", at(nodes[1].block + 16 + 54 + 8, nan)},
        {"points beyond the end", [](TreeImage& i) { i.bytes.pop_back(); }},
        {"and the file at", [](TreeImage& i) { i.bytes += 'x'; }}};
    for (const Case& c : cases) {
        TreeImage damaged = image;
        c.plant(damaged);
        const ProgramResult result = verify(damaged);
        EXPECT_EQ(result.status, 1) << c.finding;
        EXPECT_THAT(result.out, testing::HasSubstr(c.finding));
        EXPECT_EQ(result.err, "");
    }
}

TEST_F(VerifyCommandTest, SurvivesWhateverItIsGiven) {
    std::mt19937 random(11);
    for (int round = 0; round < 150; ++round) {
        TreeImage damaged = image;
        if (round % 3 == 0)
            damaged.bytes.resize(random() % damaged.bytes.size());
        else
            for (int change = 0; change < 3; ++change)
                damaged.patch(random() % (damaged.bytes.size() - 8), static_cast<Word>(random())
                                                                         << (random() % 48));
        const int status = verify(damaged).status;
        EXPECT_TRUE(status == 0 || status == 1) << status;
    }
}

}  // namespace
}  // namespace vpc::test
