#include "tree/disk/VpcDiskTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <random>

#include "core/util/VpcLogger.h"
#include "platform/OdCmEntityColor.h"
#include "platform/OdGePoint3d.h"
#include "support/PrepareRun.h"
#include "support/ScanFiles.h"
#include "support/TreeFile.h"
#include "support/TreeImage.h"
#include "tree/disk/VpcDiskNode.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using vpc::test::CloudShape;
using vpc::test::PointRecord;
using vpc::test::TempFolder;
using vpc::test::toWx;
using vpc::test::TreeFile;
using vpc::test::TreeImage;
using vpc::test::TreeNode;
using vpc::test::Word;

/// Arrays as the host's, with room that nothing may be written to behind the capacity.
struct Buffers {
    static constexpr std::size_t guard = 8;
    static constexpr OdUInt32 untouched = 0xC3123456;

    explicit Buffers(std::size_t slots)
        : capacity(slots),
          coords(slots + guard, OdGePoint3d(-7, -7, -7)),
          colours(slots + guard),
          sizes(slots + guard, -7) {
        for (OdCmEntityColor& colour : colours) colour.setColor(untouched);
    }
    unsigned long long add(VpcDiskNode& node, unsigned long long slot, unsigned long long most,
                           unsigned long long end = std::numeric_limits<Word>::max()) {
        return node.AddPointsFromDisk(slot, coords.data(), colours.data(), sizes.data(), most, end);
    }
    bool isUntouched(std::size_t slot) const {
        return coords[slot] == OdGePoint3d(-7, -7, -7) && colours[slot].color() == untouched &&
               sizes[slot] == -7;
    }
    void expect(std::size_t slot, const PointRecord& p) const {
        EXPECT_EQ(coords[slot], OdGePoint3d(p.x, p.y, p.z)) << slot;
        const OdCmEntityColor colour = colours[slot];
        EXPECT_EQ(colour.color() >> 24, 0xC3U) << slot;
        EXPECT_THAT((std::array<int, 3>{colour.red(), colour.green(), colour.blue()}),
                    ElementsAre(p.red % 256, p.green % 256, p.blue % 256))
            << slot;
        EXPECT_EQ(sizes[slot], p.scannerDistance >= 1 ? p.scannerDistance : 1) << slot;
    }

    std::size_t capacity;
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
    /// Loads a file that the driver makes of a cloud, its colours and distances then replaced by
    /// values of every kind.
    TreeFile loadCloud(CloudShape shape, bool isKdTree) {
        vpc::test::PrepareFolder work;
        const auto cloud = vpc::test::makeCloud({shape, 3000, 5, 65535});
        vpc::test::writePts(work.scan("a.pts"), 7, {cloud});
        const TreePrepareResult result = vpc::test::prepare({work.scan("a.pts")}, work.work(),
                                                            work.output(), {77, isKdTree, 150, 6});
        EXPECT_TRUE(result.success) << result.message;
        std::string bytes = vpc::test::readBytes(work.output());
        spoilAttributes(bytes);
        EXPECT_TRUE(load(bytes));
        return TreeFile(bytes);
    }
    std::string path() const { return folder.file("tree.vpt"); }

    /// What an empty tree is to be like.
    void expectEmpty() const {
        EXPECT_EQ(tree->GetNrLevels(), 0U);
        EXPECT_TRUE(tree->GetLevels().empty());
        EXPECT_EQ(tree->GetRootNode(), nullptr);
        EXPECT_EQ(tree->totalNrPoints(), 0U);
        EXPECT_TRUE(tree->GetNodePointSummary().empty());
    }

    TempFolder folder;
    std::unique_ptr<VpcDiskTree> tree;

private:
    static void spoilAttributes(std::string& bytes) {
        std::mt19937 engine(3);
        const std::array distances{0.5, -1.0, 2.5, 1.0, 1e300, std::nan("")};
        for (const auto& level : TreeFile(bytes).levels)
            for (const TreeNode& node : level)
                for (Word i = 0; i < node.pointCount; ++i) {
                    char* const record = &bytes[node.listPosition + PointRecord::size * i];
                    PointRecord point = PointRecord::fromBytes(record);
                    point.scannerDistance = distances[engine() % distances.size()];
                    point.green = static_cast<std::uint16_t>(engine());
                    point.bytes().copy(record, PointRecord::size);
                }
    }
};

std::vector<std::array<Word, 3>> listOf(const VpcNodeIndex& path) {
    std::vector<std::array<Word, 3>> list;
    for (const auto& step : path) list.push_back({step.first, step.second, step.third});
    return list;
}

void expectNode(const VpcDiskNode& node, const TreeNode& expected) {
    const auto margin = [&](std::size_t axis) {
        return expected.level > 0 ? 0 : 0.0001 * (expected.boxMax[axis] - expected.boxMin[axis]);
    };
    const VpcBoundingBoxAxisAligned box = node.box;
    const VpcPoint3D& low = box.minPoint;
    const VpcPoint3D& high = box.maxPoint;
    EXPECT_EQ(node.box.Centre(), box.centre);
    EXPECT_THAT((std::array{low.x, low.y, low.z}),
                ElementsAre(expected.boxMin[0] - margin(0), expected.boxMin[1] - margin(1),
                            expected.boxMin[2] - margin(2)));
    EXPECT_THAT((std::array{high.x, high.y, high.z}),
                ElementsAre(expected.boxMax[0] + margin(0), expected.boxMax[1] + margin(1),
                            expected.boxMax[2] + margin(2)));
    const double diagonal = std::hypot(high.x - low.x, high.y - low.y, high.z - low.z);
    const double density = static_cast<double>(expected.pointCount) / (diagonal * diagonal);
    EXPECT_NEAR(node.density, density, 1e-12 * density);
    EXPECT_EQ(node.nrPoints, expected.pointCount);
    EXPECT_EQ(node.minDistance, expected.distance);
    EXPECT_EQ(node.Level(), expected.level);
    EXPECT_EQ(node.hNodeIndex.size(), expected.path.size());
    EXPECT_EQ(listOf(node.hNodeIndex), expected.path);
    EXPECT_EQ(listOf(node.hNrNodes), expected.gridPath);
    EXPECT_EQ(node.hNodeIndex[0], (VpcDiskNode::Triplet{0, 0, 0}));
    EXPECT_EQ(node.hNodeIndex[expected.level], node.hNodeIndex.back());
    EXPECT_THAT((std::array{node.childGrid.x, node.childGrid.y, node.childGrid.z}),
                testing::ElementsAreArray(expected.grid));
    for (int axis = 0; axis < 3; ++axis)
        EXPECT_THAT(node.SplitCoordinates(axis),
                    testing::ElementsAreArray(expected.cellWidths[static_cast<std::size_t>(axis)]));
    EXPECT_EQ(node.recordPosition, expected.ownPosition);
    EXPECT_EQ(node.pointBlock, expected.blockPosition);
    EXPECT_EQ(node.pointsOffset, expected.listPosition);
    EXPECT_EQ(node.parentRecord, expected.parentPosition);
    EXPECT_EQ(node.parentPointBlock, expected.parentBlockPosition);
    ASSERT_EQ(node.childEntries.size(), expected.children.size());
    for (std::size_t i = 0; i < expected.children.size(); ++i)
        EXPECT_THAT((std::array{node.childEntries[i].record, node.childEntries[i].pointBlock}),
                    testing::ElementsAreArray(expected.children[i]));
}

/// Every child is in its parent's list and found by its path, from the root and from the parent.
void expectPlace(VpcDiskTree& tree, VpcDiskNode& node) {
    VpcNodeIndex path = node.hNodeIndex;
    EXPECT_EQ(tree.GetRootNode()->GetNodeFromIndex(path), &node);
    EXPECT_EQ(node.GetNodeFromIndex(path), &node);
    if (node.parent == nullptr) return;
    EXPECT_EQ(node.parent->GetNodeFromIndex(path), &node);
    EXPECT_EQ(std::count(node.parent->children.begin(), node.parent->children.end(), &node), 1);
    const auto own = path.back();
    EXPECT_EQ(node.parent->GetChildNodeFromTriplet(own.first, own.second, own.third), &node);
    path.pop_back();
    EXPECT_EQ(node.GetNodeFromIndex(path), nullptr) << "a path that ends above the node";
    path.push_back({0, 0, 1000});
    EXPECT_EQ(tree.GetRootNode()->GetNodeFromIndex(path), nullptr) << "no such child";
    path.push_back({0, 0, 0});
    EXPECT_EQ(tree.GetRootNode()->GetNodeFromIndex(path), nullptr) << "nor one below";
}

TEST_F(VpcDiskTreeTest, LoadsEveryNodeAndEveryPointAsTheyStandInTheFile) {
    for (const CloudShape shape : {CloudShape::Uniform, CloudShape::Clusters, CloudShape::Flat,
                                   CloudShape::Line, CloudShape::Duplicates, CloudShape::FarAway})
        for (const bool isKdTree : {false, true}) {
            SCOPED_TRACE(testing::Message() << static_cast<int>(shape) << " kd " << isKdTree);
            const TreeFile file = loadCloud(shape, isKdTree);
            EXPECT_EQ(tree->GetHeader().treeType, isKdTree ? 1U : 0U);
            EXPECT_EQ(tree->GetHeader().hostValue, 77U);
            EXPECT_EQ(tree->vptVersion, 9U);
            ASSERT_EQ(tree->GetNrLevels(), file.levels.size());
            ASSERT_EQ(tree->GetLevels().size(), file.levels.size());
            EXPECT_EQ(tree->totalNrPoints(), 3000U);
            for (std::size_t level = 0; level < file.levels.size(); ++level) {
                const auto& nodes = tree->GetLevels()[level];
                ASSERT_EQ(nodes.size(), file.levels[level].size());
                EXPECT_EQ(tree->GetLevelMinDistance(level), file.levels[level].front().distance);
                Word points = 0;
                for (std::size_t n = 0; n < nodes.size(); ++n) {
                    const TreeNode& expected = file.levels[level][n];
                    SCOPED_TRACE(testing::Message() << "level " << level << " node " << n);
                    expectNode(*nodes[n], expected);
                    expectPlace(*tree, *nodes[n]);
                    Buffers buffers(expected.points.size() + 5);
                    ASSERT_EQ(buffers.add(*nodes[n], 5, buffers.capacity), expected.pointCount);
                    for (std::size_t i = 0; i < expected.points.size(); ++i)
                        buffers.expect(5 + i, expected.points[i]);
                    EXPECT_TRUE(buffers.isUntouched(4) && buffers.isUntouched(buffers.capacity));
                    points += expected.pointCount;
                    if (HasFailure()) return;
                }
                EXPECT_THAT(tree->GetNodePointSummary()[level], Pair(nodes.size(), points));
            }
        }
}

TEST_F(VpcDiskTreeTest, WritesNoMorePointsThanThereIsRoomFor) {
    TreeImage image({});
    ASSERT_TRUE(load(image.bytes));
    VpcDiskNode& node = *tree->GetLevels()[2][0];
    const Word unlimited = std::numeric_limits<Word>::max();
    const struct {
        Word firstSlot, maxCount, capacity, written;
    } cases[] = {{0, 20, unlimited, 5}, {3, 5, unlimited, 5}, {0, 3, unlimited, 3},
                 {9, 3, unlimited, 3},  {0, 0, unlimited, 0}, {0, 20, 5, 5},
                 {16, 20, 20, 4},       {19, 20, 20, 1},      {20, 20, 20, 0},
                 {21, 20, 20, 0},       {15, 2, 20, 2},       {unlimited, 20, 20, 0}};
    for (const auto& c : cases) {
        Buffers buffers(20);
        EXPECT_EQ(buffers.add(node, c.firstSlot, c.maxCount, c.capacity), c.written);
        for (std::size_t slot = 0; slot < buffers.coords.size(); ++slot)
            EXPECT_EQ(buffers.isUntouched(slot),
                      slot < c.firstSlot || slot >= c.firstSlot + c.written)
                << c.firstSlot << ", slot " << slot;
    }
    Buffers buffers(20);
    EXPECT_EQ(buffers.add(*tree->GetLevels()[1][1], 0, 20), 0U) << "a node without points";
}

TEST_F(VpcDiskTreeTest, DecodesOnlyTheRecordsThatAFileCutShortStillHas) {
    const TreeFile file = loadCloud(CloudShape::Uniform, false);
    const TreeNode& expected = file.levels[1].back();
    VpcDiskNode& node = *tree->GetLevels()[1].back();
    ASSERT_GT(expected.pointCount, 90U) << "more than the system's smallest block";
    const std::string whole = vpc::test::readBytes(path());
    for (const auto& [bytes, points] : std::vector<std::pair<Word, Word>>{
             {54 * 90, 90}, {54 * 80 + 53, 80}, {54, 1}, {53, 0}, {0, 0}}) {
        std::filesystem::resize_file(path(), expected.listPosition + bytes);
        Buffers buffers(expected.pointCount);
        EXPECT_EQ(buffers.add(node, 0, buffers.capacity), points);
        for (std::size_t i = 0; i < points; ++i) buffers.expect(i, expected.points[i]);
        EXPECT_TRUE(buffers.isUntouched(points)) << bytes;
        std::filesystem::resize_file(path(), 0);
        EXPECT_EQ(buffers.add(*tree->GetLevels().back().back(), 0, buffers.capacity), 0U);
        vpc::test::writeBytes(path(), whole);
        EXPECT_EQ(buffers.add(node, 0, buffers.capacity), expected.pointCount) << "it is back";
        // Another place of the file, so that nothing of this one is remembered.
        EXPECT_GT(buffers.add(*tree->GetLevels().back().back(), 0, buffers.capacity), 0U);
    }
}

TEST_F(VpcDiskTreeTest, WritesASummary) {
    const TreeImage image({});
    ASSERT_TRUE(load(image.bytes));
    const auto totals = [](int level, int nodes, int points) {
        const std::string rule = std::string(41, '#') + "\n";
        return rule + "## in level " + std::to_string(level) +
               "\n##   - Total #nodes  = " + std::to_string(nodes) +
               "\n##   - Total #points = " + std::to_string(points) + "\n" + rule;
    };
    const std::string head = "Point tree File format Version 9\n";
    const std::string root =
        "Level 0 \t node 0\n\t min distance = 0.500000\n"
        " hNodeIndex.size() = 1\t[ 0, 0, 0 ] \n hNrNodes.size() = 1\t[ 1, 1, 1 ] \n"
        "\t\t ROI min -0.000400\t-0.000200\t-0.000200, -> max 4.000400\t2.000200\t2.000200\n"
        "\t\t nr child nodes = 2\n\t\t nr points = 2\n";
    const std::string east =
        "Level 1 \t node 1\n\t min distance = 0.500000\n"
        " hNodeIndex.size() = 2\t[ 0, 0, 0 ] [ 1, 0, 0 ] \n"
        " hNrNodes.size() = 2\t[ 1, 1, 1 ] [ 2, 1, 1 ] \n"
        "\t\t ROI min 2.000000\t0.000000\t0.000000, -> max 4.000000\t2.000000\t2.000000\n"
        "\t\t nr child nodes = 0\n\t\t nr points = 0\n";
    const std::string out = folder.file("\u00fcbersicht.txt");
    ASSERT_TRUE(tree->WriteSummary(toWx(out), false));
    EXPECT_EQ(vpc::test::readBytes(out),
              head + totals(0, 1, 2) + totals(1, 2, 3) + totals(2, 1, 5));
    ASSERT_TRUE(tree->WriteSummary(toWx(out), true));
    const std::string text = vpc::test::readBytes(out);
    EXPECT_EQ(text.find(head + root + totals(0, 1, 2) + "Level 1 \t node 0\n"), 0U) << text;
    EXPECT_THAT(text, HasSubstr(east + totals(1, 2, 3) + "Level 2 \t node 0\n"));
    EXPECT_FALSE(tree->WriteSummary(toWx(folder.file("none/summary.txt")), true));
}

TEST_F(VpcDiskTreeTest, DividesTheRootIntoAboutCubes) {
    const struct {
        std::array<double, 3> extent;
        std::array<Word, 3> grid;
    } cases[] = {{{1, 1, 1}, {2, 2, 2}},
                 {{1, 1, 2}, {1, 1, 2}},
                 {{3, 2, 1}, {3, 2, 1}},
                 {{2.6, 1, 9.4}, {3, 1, 9}},
                 {{1, 1.5, 2.5}, {1, 1, 2}},
                 {{2.50005, 1.50005, 1}, {3, 2, 1}},
                 {{1, 2.50005, 1.50005}, {1, 2, 1}},
                 {{2.50005, 1, 1.50005}, {2, 1, 1}}};
    for (const auto& c : cases) {
        VpcDiskTree empty;
        EXPECT_EQ(empty.GetDimensionRatios(), (VpcDiskNode::Triplet{1, 1, 1}));
        empty.InitializeDimensionRatios(c.extent[0], c.extent[1], c.extent[2]);
        EXPECT_EQ(empty.GetDimensionRatios(),
                  (VpcDiskNode::Triplet{c.grid[0], c.grid[1], c.grid[2]}))
            << c.extent[0] << ' ' << c.extent[1] << ' ' << c.extent[2];
    }
    // No extent at all must do no harm.
    VpcDiskTree flat;
    flat.InitiateRootNode(VpcPoint3D(1, 1, 1), VpcPoint3D(1, 1, 5), 1, 2, 3, 0);
    ASSERT_NE(flat.GetRootNode(), nullptr);
    EXPECT_EQ(flat.GetRootNode()->box.maxPoint.z, 5.0004);
    EXPECT_EQ(flat.GetRootNode()->pointsOffset, 3U);
    EXPECT_THAT(flat.GetLevels(), ElementsAre(ElementsAre(flat.GetRootNode())));
    Buffers buffers(4);
    flat.GetRootNode()->nrPoints = 2;
    EXPECT_EQ(buffers.add(*flat.GetRootNode(), 0, 4), 0U) << "there is no file";
}

TEST_F(VpcDiskTreeTest, LoadsOnce) {
    TreeImage image({U"a.pts"});
    image.patch(0, Word{8});
    ASSERT_TRUE(load(image.bytes)) << "the version is the caller's to judge";
    EXPECT_EQ(tree->vptVersion, 8U);
    EXPECT_THAT(tree->GetHeader().sourceNames, ElementsAre(wxString("a.pts")));
    EXPECT_EQ(VpcDiskTree::ReadFileVersion(toWx(path())), 8U);
    EXPECT_EQ(VpcDiskTree::ReadFileVersion(toWx(folder.file("none"))), 0U);
    const VpcDiskNode* const root = tree->GetRootNode();
    EXPECT_FALSE(tree->CreateFromFile(toWx(path())));
    EXPECT_EQ(tree->GetRootNode(), root);
}

TEST_F(VpcDiskTreeTest, LoadsATreeWithoutLevelsAndOneWhoseDeepestLevelIsEmpty) {
    TreeImage image({});
    const std::string header = image.bytes.substr(0, 127);
    const std::string zero(8, '\0');
    image.patch(24, Word{0});
    EXPECT_TRUE(load(image.bytes.substr(0, 135) + zero));
    expectEmpty();
    EXPECT_TRUE(tree->CreateFromFile(toWx(path()))) << "it holds no levels still";
    // The root alone, and a second level of no nodes.
    std::string bytes = image.bytes.substr(0, 135);
    for (const Word word : {2ULL, 1ULL, 0ULL})
        bytes.append(reinterpret_cast<const char*>(&word), 8);
    bytes += image.bytes.substr(image.firstRecord());
    ASSERT_TRUE(load(bytes));
    EXPECT_THAT(tree->GetNodePointSummary(), ElementsAre(Pair(1, 2), Pair(0, 0)));
    EXPECT_EQ(tree->totalNrPoints(), 0U);
    EXPECT_EQ(tree->GetLevelMinDistance(1), 0.0);
}

TEST_F(VpcDiskTreeTest, RefusesAFileThatDoesNotHoldTogether) {
    const TreeImage image({});
    const auto& nodes = image.nodes;
    const Word huge = 1ULL << 60;
    const struct {
        Word position, value;
        const char* fault;
    } cases[] = {
        {24, huge, "claims a node of"},
        {127, 53, "holds point records of 53 bytes in place of 54"},
        {135, huge, "levels, more than it has room for"},
        {143, 0, "claims 0 root nodes"},
        {143, 2, "claims 2 root nodes"},
        {151, huge, "more than it has room for"},
        {nodes[0].members[6], huge, "ends before the points of node 0 of level 0"},
        {nodes[3].members[13], image.bytes.size() - 54 * 5 + 1, "ends before the points of"},
        {nodes[2].members[13], huge, "ends before the points of node 1 of level 1"},
        {nodes[2].members[7], huge, "ends within the record of node 1 of level 1"},
        {nodes[2].members[2] + 24, 0, "has another place than its path tells for node 1"},
        {nodes[1].members[2] + 32, 1, "has another place than its path tells for node 0"},
        {nodes[3].members[2] + 24, 2, "has no parent for node 0 of level 2"},
        {nodes[3].members[2] + 40, huge, "has no parent for node 0 of level 2"},
    };
    for (const auto& c : cases) {
        TreeImage damaged = image;
        damaged.patch(c.position, c.value);
        const std::string log = folder.file("log.txt");
        VpcLogger::Instance()->Open(toWx(log));
        EXPECT_FALSE(load(damaged.bytes)) << c.fault;
        VpcLogger::Instance()->Close();
        expectEmpty();
        EXPECT_THAT(vpc::test::readBytes(log), HasSubstr(c.fault));
        EXPECT_THAT(vpc::test::readBytes(log), HasSubstr(path()));
        vpc::test::writeBytes(path(), image.bytes);
        EXPECT_TRUE(tree->CreateFromFile(toWx(path()))) << "an empty tree can be loaded";
    }
    for (const std::string& missing : {folder.file("none"), folder.path().string()}) {
        tree = std::make_unique<VpcDiskTree>();
        EXPECT_FALSE(tree->CreateFromFile(toWx(missing)));
        expectEmpty();
    }
}

TEST_F(VpcDiskTreeTest, RefusesAFileCutShortAnywhere) {
    const TreeImage image({U"a", U"name"});
    for (std::size_t length = 0; length < image.bytes.size(); ++length) {
        ASSERT_FALSE(load(image.bytes.substr(0, length))) << length;
        expectEmpty();
    }
}

TEST_F(VpcDiskTreeTest, ComesThroughRandomDamage) {
    const TreeImage image({U"a", U"name"});
    std::mt19937 engine(11);
    Buffers buffers(64);
    int loaded = 0;
    constexpr int rounds = 3000;
    for (int round = 0; round < rounds; ++round) {
        std::string bytes = image.bytes;
        for (unsigned changes = 1 + engine() % 4; changes > 0; --changes)
            bytes[engine() % image.pointData()] = static_cast<char>(engine() % 4 ? engine() : 255);
        if (!load(bytes)) {
            expectEmpty();
            continue;
        }
        ++loaded;
        for (const auto& level : tree->GetLevels())
            for (VpcDiskNode* node : level) {
                ASSERT_EQ(tree->GetRootNode()->GetNodeFromIndex(node->hNodeIndex), node);
                ASSERT_LE(buffers.add(*node, 10, 60, 60), 50U);
            }
        ASSERT_TRUE(buffers.isUntouched(9) && buffers.isUntouched(60));
    }
    EXPECT_GT(loaded, rounds / 10);
    EXPECT_LT(loaded, rounds * 9 / 10);
}

}  // namespace
