#include "tree/disk/VpcDiskTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "core/util/VpcLogger.h"
#include "platform/OdCmEntityColor.h"
#include "platform/OdGePoint3d.h"
#include "support/PrepareRun.h"
#include "support/ReaderTools.h"
#include "support/ScanFiles.h"
#include "support/TreeFile.h"
#include "support/TreeImage.h"
#include "tree/disk/VpcDiskNode.h"
#include "tree/verify/TreeVerifier.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using vpc::test::joined;
using vpc::test::PointRecord;
using vpc::test::toWx;
using vpc::test::TreeFile;
using vpc::test::TreeImage;
using vpc::test::TreeNode;
using vpc::test::Word;

/// Arrays as the host's, with room that nothing may be written to behind the capacity.
struct Buffers {
    static constexpr OdUInt32 untouched = 0xC3123456;

    explicit Buffers(std::size_t slots)
        : coords(slots + 8, OdGePoint3d(-7, -7, -7)), colours(slots + 8), sizes(slots + 8, -7) {
        for (OdCmEntityColor& colour : colours) colour.setColor(untouched);
    }
    Word add(VpcDiskNode& node, Word slot, Word most, Word end = std::numeric_limits<Word>::max()) {
        return node.AddPointsFromDisk(slot, coords.data(), colours.data(), sizes.data(), most, end);
    }
    bool isUntouched(std::size_t slot) const {
        return coords[slot] == OdGePoint3d(-7, -7, -7) && colours[slot].color() == untouched &&
               sizes[slot] == -7;
    }
    std::vector<OdGePoint3d> coords;
    std::vector<OdCmEntityColor> colours;
    std::vector<double> sizes;
};

class VpcDiskTreeTest : public testing::Test {
protected:
    bool load(const std::string& bytes) {
        vpc::test::writeBytes(path(), bytes);
        tree = std::make_unique<VpcDiskTree>();
        return tree->CreateFromFile(toWx(path()));
    }
    std::string path() const { return folder.file("tree.vpt"); }

    void expectRefused() const {
        int faults = 0;
        vpc::PointTreeReader file(toWx(path()));
        vpc::TreeVerifier(file, [&](const vpc::Finding&) { ++faults; }).Run();
        EXPECT_GT(faults, 0) << "what cannot be loaded is a fault for the verifier";
        EXPECT_TRUE(tree->GetLevels().empty() && tree->GetRootNode() == nullptr);
        EXPECT_TRUE(tree->totalNrPoints() == 0 && tree->GetNrLevels() == 0);
    }

    vpc::test::TempFolder folder;
    std::unique_ptr<VpcDiskTree> tree;
};

template <class Path>
std::string pathText(const Path& path) {
    std::string text;
    for (const auto& [x, y, z] : path) text += joined(x, y, z) + ',';
    return text;
}

void expectNode(VpcDiskTree& tree, VpcDiskNode& node, const TreeNode& expected) {
    const VpcPoint3D low(node.box.minPoint), high(node.box.maxPoint);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double side = expected.boxMax[axis] - expected.boxMin[axis];
        const double margin = expected.level > 0 ? 0 : 0.0001 * side;
        EXPECT_EQ((std::array{low.x, low.y, low.z}[axis]), expected.boxMin[axis] - margin);
        EXPECT_EQ((std::array{high.x, high.y, high.z}[axis]), expected.boxMax[axis] + margin);
        EXPECT_THAT(node.SplitCoordinates(static_cast<int>(axis)),
                    testing::ElementsAreArray(expected.cellWidths[axis]));
    }
    const double diagonal = low.DistanceTo(high);
    EXPECT_DOUBLE_EQ(node.density,
                     static_cast<double>(expected.pointCount) / (diagonal * diagonal));
    EXPECT_EQ(joined(node.nrPoints, node.minDistance, node.Level(), node.childGrid.x,
                     node.childGrid.y, node.childGrid.z, pathText<VpcNodeIndex>(node.hNodeIndex),
                     pathText<VpcNodeIndex>(node.hNrNodes), node.recordPosition, node.pointBlock,
                     node.pointsOffset, node.parentRecord, node.parentPointBlock),
              joined(expected.pointCount, expected.distance, expected.level, expected.grid[0],
                     expected.grid[1], expected.grid[2], pathText(expected.path),
                     pathText(expected.gridPath), expected.ownPosition, expected.blockPosition,
                     expected.listPosition, expected.parentPosition, expected.parentBlockPosition));
    for (std::size_t i = 0; i < expected.children.size(); ++i)
        EXPECT_THAT((std::array{node.childEntries[i].record, node.childEntries[i].pointBlock}),
                    testing::ElementsAreArray(expected.children[i]));
    // Every node is found by its path, and none by any other.
    VpcNodeIndex path = node.hNodeIndex;
    EXPECT_EQ(tree.GetRootNode()->GetNodeFromIndex(path), &node);
    path.push_back({0, 0, 1000});
    path.push_back({0, 0, 0});
    EXPECT_EQ(tree.GetRootNode()->GetNodeFromIndex(path), nullptr);
}

TEST_F(VpcDiskTreeTest, LoadsEveryNodeAsItStandsInTheFile) {
    TreeImage image({});
    image.patch(image.nodes[2].members[1], 0.125);
    const TreeFile file(image.bytes);
    ASSERT_TRUE(load(image.bytes));
    EXPECT_THAT(tree->GetNodePointSummary(), ElementsAre(Pair(1, 2), Pair(2, 3), Pair(1, 5)));
    EXPECT_EQ(joined(tree->totalNrPoints(), tree->GetLevelMinDistance(1)), "5 0.5");
    for (std::size_t level = 0; level < file.levels.size(); ++level)
        for (std::size_t n = 0; n < file.levels[level].size(); ++n) {
            SCOPED_TRACE(joined("level", level, "node", n));
            expectNode(*tree, *tree->GetLevels()[level][n], file.levels[level][n]);
        }
    // The root alone, and a second level of no nodes.
    image.patch(135, Word{2});
    image.patch(151, Word{0});
    image.bytes.erase(159, 8);
    ASSERT_TRUE(load(image.bytes));
    EXPECT_THAT(tree->GetNodePointSummary(), ElementsAre(Pair(1, 2), Pair(0, 0)));
    EXPECT_EQ(joined(tree->totalNrPoints(), tree->GetLevelMinDistance(1)), "0 0");
    EXPECT_FALSE(tree->CreateFromFile(toWx(path()))) << "loads once";
}

TEST_F(VpcDiskTreeTest, WritesNoMorePointsThanThereIsRoomFor) {
    TreeImage image({});
    image.patch(image.nodes[3].block + 16 + 24, std::array<std::uint16_t, 3>{0x1FF, 0x280, 0xFF01});
    ASSERT_TRUE(load(image.bytes));
    VpcDiskNode& node = *tree->GetLevels()[2][0];
    const Word unlimited = std::numeric_limits<Word>::max();
    const std::array<Word, 4> cases[] = {
        {0, 20, unlimited, 5}, {3, 5, unlimited, 5}, {0, 3, unlimited, 3},
        {0, 20, 5, 5},         {16, 20, 20, 4},      {20, 20, 20, 0},
        {15, 2, 20, 2},        {0, 0, unlimited, 0}, {unlimited, 20, 20, 0}};
    for (const auto& [firstSlot, maxCount, capacity, written] : cases) {
        Buffers buffers(20);
        EXPECT_EQ(buffers.add(node, firstSlot, maxCount, capacity), written);
        EXPECT_TRUE(written == 0 || buffers.colours[firstSlot].color() == 0xC3FF8001U);
        for (std::size_t slot = 0; slot < buffers.coords.size(); ++slot)
            EXPECT_EQ(buffers.isUntouched(slot), slot < firstSlot || slot >= firstSlot + written)
                << firstSlot << ", slot " << slot;
    }
}

TEST_F(VpcDiskTreeTest, DecodesOnlyTheRecordsThatAFileCutShortStillHas) {
    const vpc::test::PrepareFolder work;
    work.prepareTree({vpc::test::makeCloud({})}, {77, true, 300, 6});
    const std::string whole = vpc::test::readBytes(work.output());
    for (const auto& [bytes, points] :
         std::vector<std::pair<Word, Word>>{{54 * 90, 90}, {54 * 80 + 53, 80}, {53, 0}, {0, 0}}) {
        ASSERT_TRUE(load(whole));
        VpcDiskNode& node = *tree->GetLevels()[1].front();
        ASSERT_GT(node.nrPoints, 90U) << "more than the system's smallest block";
        std::filesystem::resize_file(path(), node.pointsOffset + bytes);
        Buffers buffers(1000);
        EXPECT_EQ(buffers.add(node, 0, 1000), points);
        EXPECT_TRUE(buffers.isUntouched(points)) << bytes;
        vpc::test::writeBytes(path(), whole);
        EXPECT_EQ(buffers.add(node, 0, 1000), node.nrPoints) << "it is back";
    }
}

TEST_F(VpcDiskTreeTest, WritesASummary) {
    ASSERT_TRUE(load(TreeImage({}).bytes));
    const std::string rule = std::string(41, '#') + "\n";
    const std::string totals =
        rule + "## in level 1\n##   - Total #nodes  = 2\n##   - Total #points = 3\n" + rule;
    const std::string out = folder.file("\u00fcbersicht.txt");
    ASSERT_TRUE(tree->WriteSummary(toWx(out), true));
    const std::string text = vpc::test::readBytes(out);
    EXPECT_EQ(text.find("Point tree File format Version 9\nLevel 0 \t node 0\n"), 0U);
    EXPECT_THAT(
        text,
        HasSubstr("Level 1 \t node 1\n\t min distance = 0.500000\n"
                  " hNodeIndex.size() = 2\t[ 0, 0, 0 ] [ 1, 0, 0 ] \n"
                  " hNrNodes.size() = 2\t[ 1, 1, 1 ] [ 2, 1, 1 ] \n"
                  "\t\t ROI min 2.000000\t0.000000\t0.000000, -> max 4.000000\t2.000000\t2.000000\n"
                  "\t\t nr child nodes = 0\n\t\t nr points = 0\n" +
                  totals + "Level 2 \t node 0\n"));
}

TEST_F(VpcDiskTreeTest, RefusesAFileThatDoesNotHoldTogether) {
    const TreeImage image({});
    const auto& nodes = image.nodes;
    const Word huge = 1ULL << 60;
    const std::tuple<Word, Word, const char*> cases[] = {
        {24, huge, "claims a node of"},
        {127, 53, "holds point records of 53 bytes in place of 54"},
        {135, huge, "levels, more than it has room for"},
        {143, 2, "claims 2 root nodes"},
        {nodes[0].members[6], huge, "ends before the points of node 0 of level 0"},
        {nodes[3].members[13], image.bytes.size() - 54 * 5 + 1, "ends before the points of"},
        {nodes[2].members[7], huge, "ends within the record of node 1 of level 1"},
        {nodes[2].members[2] + 24, 0, "has another place than its path tells for node 1"},
        {nodes[1].members[2] + 32, 1, "has another place than its path tells for node 0"},
        {nodes[3].members[2] + 40, huge, "has no parent for node 0 of level 2"},
    };
    // Each of two nodes has room for its points, both together have not.
    TreeImage crowded = image;
    for (const std::size_t n : {1U, 3U})
        for (const auto& [member, value] : {std::pair(6, Word{20}), {13, 0}})
            crowded.patch(nodes[n].members[static_cast<std::size_t>(member)], value);
    EXPECT_FALSE(load(crowded.bytes));
    const std::string named = TreeImage({U"a", U"name"}).bytes;
    ASSERT_TRUE(load(named));
    for (std::size_t length = named.size(); length-- > 0;) {
        std::filesystem::resize_file(path(), length);
        tree = std::make_unique<VpcDiskTree>();
        ASSERT_FALSE(tree->CreateFromFile(toWx(path()))) << length;
        expectRefused();
    }
    for (const auto& [position, value, fault] : cases) {
        TreeImage damaged = image;
        damaged.patch(position, value);
        const std::string log = folder.file("log.txt");
        VpcLogger::Instance()->Open(toWx(log));
        EXPECT_FALSE(load(damaged.bytes)) << fault;
        VpcLogger::Instance()->Close();
        expectRefused();
        EXPECT_THAT(vpc::test::readBytes(log), testing::AllOf(HasSubstr(fault), HasSubstr(path())));
    }
}

}  // namespace
