#include <limits>

#include <nlohmann/json.hpp>

#include "support/ProgramRun.h"
#include "support/TreeImage.h"

namespace vpc::test {
namespace {

using Word = TreeImage::Word;

class VerifyCommandTest : public ProgramTest {
protected:
    /// What is said about a tree with `value` at `position`.
    template <class Value>
    std::string verify(Word position, Value value) const {
        TreeImage damaged = image;
        damaged.patch(position, value);
        return verify(damaged.bytes);
    }
    std::string verify(const std::string& bytes) const {
        write("t.vpt", bytes);
        const ProgramResult result = run("verify t.vpt");
        EXPECT_EQ(result.status, result.out == "no faults found\n" ? 0 : 1);
        EXPECT_EQ(result.err, "");
        return result.out;
    }
    Word member(std::size_t node, std::size_t number) const {
        return image.nodes[node].members[number];
    }

    const TreeImage image{{U"a.las"}};
};

TEST_F(VerifyCommandTest, FindsEveryWrongMember) {
    EXPECT_EQ(verify(image.bytes), "no faults found\n");
    // Every word and every double of every record has to be what it is, but for the distances.
    for (Word position = image.firstRecord(); position < image.pointData(); position += 8) {
        bool mayDiffer = false;
        for (std::size_t node = 0; node < 4; ++node) mayDiffer |= position == member(node, 1);
        Word word = 0;
        std::memcpy(&word, image.bytes.data() + position, sizeof word);
        EXPECT_EQ(verify(position, word ^ (Word{1} << 62)) == "no faults found\n", mayDiffer)
            << position - image.firstRecord();
    }
}

TEST_F(VerifyCommandTest, SaysWhatIsWrong) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Word sizes = 119 + 8 + 8 + 5 * 4;  // behind the one source name
    const auto& nodes = image.nodes;
    const std::pair<const char*, std::string> cases[] = {
        {"version is 8 but", verify(0, Word{8})},
        {"the tree type is", verify(8, Word{1} << 32)},
        {"minimum point distance is not", verify(16, nan)},
        {"the header says 6", verify(24, Word{6})},
        {"no faults found", verify(32, true)},  // the flag carries nothing
        {"node records are said to begin at", verify(103, Word{1})},
        {"a point record takes 55", verify(sizes, Word{55})},
        {"levels, more than", verify(sizes + 8, ~Word{0})},
        {"minimum point distance that is negative", verify(member(2, 1), -1.0)},
        {"does not lead over its parent", verify(member(3, 2) + 24, Word{1})},
        {"box with corners in the wrong order", verify(member(3, 4), nan)},
        {"reaches out of its parent's box", verify(member(1, 4), -0.5)},
        {"does not fill its cell", verify(member(1, 5), 1.5)},
        {"node 0 of level 2 has 4 points, its point block 5", verify(member(3, 6), Word{4})},
        {"has more points (9) than its children", verify(member(0, 6), Word{9})},
        {"has points and no children", verify(member(2, 6), Word{1})},
        {"deepest level and names children", verify(member(3, 16), Word{5})},
        // The block repeats the count, and the next block does not stand behind so many points.
        {"2 faults found", verify(member(1, 6), Word{4})},
        {"1 fault found", verify(member(2, 13), Word{4})},
        {"has a point block for level 6", verify(nodes[1].block, Word{6})},
        {"its point block 6", verify(nodes[1].block + 8, Word{6})},
        {"1 of 5 points of node 0 of level 2 lie outside its box, the first is point 3",
         verify(nodes[3].block + 16 + 54 * 3, 2.0000001)},
        {"1 of 3 points", verify(nodes[1].block + 16 + 54 + 8, nan)},
        {"points beyond the end", verify(image.bytes.substr(0, image.bytes.size() - 1))},
        {"and the file at", verify(image.bytes + 'x')},
        // The summary comes first, and then what is wrong with the whole.
        {"2 faults found\nfile: the file is cut short: it has 1870 of 1871 bytes\npoint block: ",
         verify(image.bytes.substr(0, image.bytes.size() - 1))},
        {"1 fault found\nfile: the file is cut short, it has 600 bytes: ",
         verify(image.bytes.substr(0, 600))},
        {"the file is cut short, it has 100 bytes: ", verify(image.bytes.substr(0, 100))}};
    for (const auto& [finding, said] : cases) EXPECT_THAT(said, testing::HasSubstr(finding));
}

TEST_F(VerifyCommandTest, ChecksManyFiles) {
    TreeImage damaged = image;
    damaged.patch(24, Word{6});
    write("a.vpt", image.bytes);
    write("b.vpt", damaged.bytes);
    const ProgramResult result = run("verify b.vpt none.vpt a.vpt");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, testing::HasSubstr("'none.vpt' cannot be read"));
    EXPECT_THAT(result.out, testing::MatchesRegex("b.vpt: 1 fault found\n.*the header says 6\n"
                                                  "a.vpt: no faults found\n"));
    EXPECT_EQ(run("verify a.vpt a.vpt").status, 0);
    const auto answer = nlohmann::json::parse(run("verify --json a.vpt b.vpt none.vpt").out);
    EXPECT_EQ(answer[0],
              nlohmann::json::parse(R"({"file": "a.vpt", "faults": 0, "findings": []})"));
    EXPECT_EQ(answer[1]["findings"][0]["texts"].size(), 1U);
    EXPECT_THAT(answer[2]["error"], testing::HasSubstr("cannot be read"));
}

}  // namespace
}  // namespace vpc::test
