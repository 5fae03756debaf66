#include "tree/construct/VpcConstructTree.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "core/util/FileTools.h"

namespace {

namespace fs = std::filesystem;

/// A folder of the test's own, removed at its end.
class ConstructTreeTest : public testing::Test {
protected:
    ConstructTreeTest() {
        const auto* info = testing::UnitTest::GetInstance()->current_test_info();
        folder_ = fs::temp_directory_path() /
                  ("vpc-construct-" + std::string(info->name()) + std::to_string(getpid()));
        fs::create_directories(folder_ / "work");
    }
    ~ConstructTreeTest() override { fs::remove_all(folder_); }

    wxString WorkingFolder() const {
        return FileTools::FromNativePath((folder_ / "work").string() + "/");
    }
    wxString Output(const std::string& name) const {
        return FileTools::FromNativePath((folder_ / name).string());
    }
    std::string Bytes(const std::string& name) const {
        std::ifstream file(folder_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    /// Names in the working folder, without the tree's id, with their sizes in records.
    std::vector<std::pair<std::string, std::uintmax_t>> NodeFiles(
        const VpcConstructTree& tree) const {
        std::vector<std::pair<std::string, std::uintmax_t>> files;
        const std::size_t idLength = tree.TreeId().length();
        for (const auto& entry : fs::directory_iterator(folder_ / "work"))
            files.emplace_back(entry.path().filename().string().substr(idLength),
                               entry.file_size() / vpc::recordSize);
        std::sort(files.begin(), files.end());
        return files;
    }

    fs::path folder_;
};

using NodeFileList = std::vector<std::pair<std::string, std::uintmax_t>>;

VpcPoint3D pointAt(double x, double y, double z) {
    return {x, y, z, 1, 2, 3, 4.0, 0, 1.0};
}

std::vector<VpcPoint3D> randomPoints(std::size_t count, unsigned seed) {
    std::mt19937 generator(seed);
    const auto draw = [&generator] { return static_cast<double>(generator()) / 4294967296.0; };
    std::vector<VpcPoint3D> points;
    for (std::size_t i = 0; i < count; ++i) {
        const double x = draw() * 100;
        points.push_back(pointAt(x, draw() * draw() * 60, 5 * std::sin(x) + draw()));
        points.back().red = static_cast<unsigned short>(generator());
    }
    return points;
}

const VpcBoundingBoxAxisAligned cube(0, 0, 0, 8, 8, 8);

TEST_F(ConstructTreeTest, RootGridFollowsTheAspectOfTheData) {
    const struct {
        double x, y, z;
        VpcTriplet<unsigned long long> ratios;
    } cases[] = {
        {5, 5, 5, {2, 2, 2}},         {100, 10, 1, {100, 10, 1}},   {1, 1, 2, {1, 1, 2}},
        {3, 2, 1, {3, 2, 1}},         {1, 1.5, 1, {2, 2, 2}},       {1, 1.50015, 1, {1, 2, 1}},
        {1.50005, 1, 1.2, {2, 2, 2}}, {1.50005, 1.2, 1, {2, 1, 1}}, {4, 1, 2, {4, 1, 2}}};
    VpcConstructTree tree(WorkingFolder(), Tree_Octree, 10, 5, false);
    for (const auto& c : cases) {
        tree.InitializeDimensionRatios(c.x, c.y, c.z);
        const auto& ratios = tree.DimensionRatios();
        EXPECT_TRUE(ratios.first == c.ratios.first && ratios.second == c.ratios.second &&
                    ratios.third == c.ratios.third)
            << c.x << ' ' << c.y << ' ' << c.z << " -> " << ratios.first << ' ' << ratios.second
            << ' ' << ratios.third;
    }
}

TEST_F(ConstructTreeTest, NodeFilesHoldWhatTheNodesHaveWritten) {
    VpcConstructTree tree(WorkingFolder(), Tree_Octree, 10, 5, false);
    tree.InitializeRootNode(cube);
    std::vector<VpcPoint3D> points;
    for (int i = 0; i < 10; ++i)
        points.push_back(pointAt(i % 2 == 0 ? 1.0 : 7.0, 1, 0.5 + i / 20.0));

    tree.AddPoints(points.data(), 4);
    EXPECT_EQ(NodeFiles(tree), NodeFileList{});
    tree.FlushBuffersToDisk(4);
    EXPECT_EQ(NodeFiles(tree), NodeFileList{});
    tree.AddPoints(&points[4], 1);  // half of the node's capacity is in the buffer
    EXPECT_EQ(NodeFiles(tree), (NodeFileList{{"--0", 5}}));
    tree.AddPoints(&points[5], 2);
    tree.FlushBuffersToDisk(1);
    EXPECT_EQ(NodeFiles(tree), (NodeFileList{{"--0", 7}}));

    tree.AddPoints(&points[7], 3);  // the tenth point splits the root: five points a child
    EXPECT_EQ(NodeFiles(tree), (NodeFileList{{"--0-0", 5}, {"--0-1", 5}}));
    EXPECT_EQ(tree.Root()->PointsOnDisk(), 0U);
    const VpcConstructNode& child = *tree.Root()->Children()[1];
    ASSERT_EQ(tree.Root()->Children()[1]->GetPointsFromDisk().size(), 5U);
    EXPECT_EQ(tree.Root()->Children()[1]->GetPointsFromDisk()[2].z, points[5].z);
    EXPECT_EQ(child.ChildrenPerAxis().first, 0U);
}

TEST_F(ConstructTreeTest, FinishingPushesLeavesDownAndSamplesUpwards) {
    VpcConstructTree tree(WorkingFolder(), Tree_Octree, 4, 5, false);
    tree.setSubsampleType(Subsample_Random, false);
    tree.InitializeRootNode(cube);
    // Two points in one corner stay a level above the four that split once more.
    const std::vector<VpcPoint3D> points{pointAt(1, 1, 1),   pointAt(7, 7, 7), pointAt(1, 1, 1.5),
                                         pointAt(7, 7, 7.5), pointAt(3, 1, 1), pointAt(1, 3, 1)};
    tree.AddPoints(points.data(), points.size());
    ASSERT_EQ(tree.Levels().size(), 3U);
    ASSERT_TRUE(tree.FinishAddData());

    EXPECT_EQ(tree.EndNodes().size(), 4U);
    for (const VpcConstructNode* node : tree.EndNodes()) EXPECT_EQ(node->Level(), 2U);
    const VpcConstructNode& pushed = *tree.Root()->Children()[7]->Children()[0];
    EXPECT_EQ(pushed.FileName(), WorkingFolder() + tree.TreeId() + "--0-7-0");
    EXPECT_TRUE(pushed.ChildrenPerAxis().first == 1 && pushed.ChildrenPerAxis().third == 1);
    EXPECT_EQ(pushed.CellSize()[0], pushed.Extent(0));
    // Nodes of one or two points hand on all of them; a parent of four and one of two remain.
    EXPECT_EQ(tree.Root()->Children()[0]->PointsOnDisk(), 4U);
    EXPECT_EQ(tree.Root()->Children()[7]->PointsOnDisk(), 2U);
    EXPECT_EQ(tree.PointsAdded(), 6U + 6U + tree.Root()->PointsOnDisk());
    EXPECT_EQ(tree.actualMaxPointsPerNode(), 2U);
    for (const auto& [name, records] : NodeFiles(tree))
        EXPECT_EQ(records == 0, name.find("--0-0") != 0 && name.find("--0-7") != 0 && name != "--0")
            << name;
}

TEST_F(ConstructTreeTest, ASecondRootStartsAnew) {
    const std::vector<VpcPoint3D> points = randomPoints(300, 5);
    VpcConstructTree tree(WorkingFolder(), Tree_Octree, 50, 5, false);
    for (const unsigned long long count : {300ULL, 20ULL}) {
        tree.InitializeRootNode({0, 0, -6, 100, 60, 6});
        tree.AddPoints(points.data(), count);
    }
    tree.FlushBuffersToDisk(0);
    EXPECT_EQ(NodeFiles(tree), (NodeFileList{{"--0", 20}}));
    ASSERT_TRUE(tree.FinishAddData());
    EXPECT_EQ(tree.Levels().size(), 1U);
    EXPECT_EQ(tree.FilledLeafCount(), 1U);
    EXPECT_EQ(tree.PointsAdded(), 20U);
}

TEST_F(ConstructTreeTest, LeavesThatCannotSplitGrow) {
    const struct {
        VpcTreeType type;
        unsigned long long maxLevel;
        double at;
    } cases[] = {{Tree_Octree, 0, 1.0},
                 {Tree_Octree, 3, 1.0},
                 {Tree_Octree, 500, 5e6},
                 {Tree_KdTree_Symmetric, 500, 5e6},
                 {Tree_KdTree_Symmetric, 2, -3.0}};
    for (const auto& c : cases) {
        VpcConstructTree tree(WorkingFolder(), c.type, 5, c.maxLevel, false);
        tree.InitializeRootNode({c.at, c.at, c.at, c.at, c.at, c.at});
        const std::vector<VpcPoint3D> points(40, pointAt(c.at, c.at, c.at));
        tree.AddPoints(points.data(), points.size());
        EXPECT_EQ(tree.UntakenPoints(), 0U);
        EXPECT_LE(tree.Levels().size(), std::min<std::size_t>(c.maxLevel + 1, 120));
        ASSERT_TRUE(tree.FinishAddData());
        EXPECT_EQ(tree.actualMaxPointsPerNode(), 40U);
    }
}

TEST_F(ConstructTreeTest, PointsThatNoChildTakesAreCounted) {
    VpcConstructTree tree(WorkingFolder(), Tree_Octree, 3, 5, false);
    tree.InitializeRootNode(cube);
    const std::vector<VpcPoint3D> points{pointAt(9, 1, 1), pointAt(1, 1, 1), pointAt(2, 2, 2),
                                         pointAt(-1, 0, 0), pointAt(1e300, -1e300, 0)};
    tree.AddPoints(points.data(), points.size());
    EXPECT_EQ(tree.UntakenPoints(), 3U);  // the first was in the root's buffer until it split
    EXPECT_EQ(tree.Root()->FindLeaf(1, 1, 1)->PointsInAll(), 2U);
}

TEST_F(ConstructTreeTest, FilesGoWithTheTreeAndNothingElseDoes) {
    std::ofstream(folder_ / "work" / "mine.txt") << "x";
    const std::vector<VpcPoint3D> points = randomPoints(500, 1);
    {
        VpcConstructTree tree(WorkingFolder(), Tree_Octree, 50, 5, false);
        tree.InitializeRootNode({0, 0, -6, 100, 60, 6});
        tree.AddPoints(points.data(), points.size());
        tree.FlushBuffersToDisk(0);
        EXPECT_GT(std::distance(fs::directory_iterator(folder_ / "work"), {}), 5);
    }
    {  // without a separator at its end the folder's name begins the files' names
        VpcConstructTree tree(Output("work"), Tree_Octree, 50, 5, false);
        tree.InitializeRootNode({0, 0, -6, 100, 60, 6});
        tree.AddPoints(points.data(), 40);
        const std::string name = "work" + tree.TreeId().utf8_string() + "--0";
        EXPECT_TRUE(fs::exists(folder_ / name));
        ASSERT_TRUE(tree.FinishAddData());
        ASSERT_TRUE(tree.CreateDiskTreeFile(Output("out.vpt"), 0));
        EXPECT_FALSE(fs::exists(folder_ / name));
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_ / "work"), {}), 1);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 2);
}

TEST_F(ConstructTreeTest, PointMemoryDoesNotChangeTheFile) {
    const std::vector<VpcPoint3D> points = randomPoints(60000, 7);
    for (const VpcTreeType type : {Tree_Octree, Tree_KdTree_Symmetric}) {
        for (const unsigned long long memory : {0ULL, 1ULL, 100ULL << 20}) {
            VpcConstructTree tree(WorkingFolder(), type, 300, 7, true, memory);
            tree.setSubsampleType(Subsample_Random, false);
            tree.InitializeRootNode({0, 0, -6, 100, 60, 6});
            for (std::size_t i = 0; i < points.size(); i += 10000) {
                tree.AddPoints(&points[i], 10000);
                tree.FlushBuffersToDisk(100);
            }
            // Point memory (of which there is a megabyte at least, too little for these points)
            // leaves no file that could be seen.
            EXPECT_EQ(fs::is_empty(folder_ / "work"), memory > 0);
            ASSERT_TRUE(tree.FinishAddData());
            ASSERT_TRUE(tree.CreateDiskTreeFile(Output(std::to_string(memory)), 6));
            EXPECT_TRUE(fs::is_empty(folder_ / "work"));
        }
        const std::string bytes = Bytes("0");
        EXPECT_GT(bytes.size(), points.size() * vpc::recordSize);
        EXPECT_TRUE(bytes == Bytes("1"));
        EXPECT_TRUE(bytes == Bytes(std::to_string(100ULL << 20)));
    }
}

TEST_F(ConstructTreeTest, GridThinningIsTheDefaultAndKeepsItsSpacing) {
    const std::vector<VpcPoint3D> points = randomPoints(5000, 3);
    VpcConstructTree tree(WorkingFolder(), Tree_Octree, 200, 6, false);
    tree.InitializeRootNode({0, 0, -6, 100, 60, 6});
    tree.AddPoints(points.data(), points.size());
    ASSERT_TRUE(tree.FinishAddData());
    const auto& levels = tree.Levels();
    for (std::size_t level = 0; level + 1 < levels.size(); ++level) {
        for (const VpcConstructNode* node : levels[level]) {
            unsigned long long below = 0;
            for (const auto& child : node->Children()) below += child->PointsOnDisk();
            EXPECT_EQ(node->PointsOnDisk() == 0, below == 0);
            EXPECT_LE(node->PointsOnDisk(), below);
        }
    }
    // The octree's parent spacing is thrice the child's, and the child's replaces it later.
    const VpcConstructNode* deepest = levels.back().front();
    EXPECT_EQ(deepest->MinDistance(), deepest->ComputePointMinDistanceForLevel());
    EXPECT_EQ(tree.Root()->MinDistance(), 3.0 * levels[1].back()->MinDistance());
    ASSERT_TRUE(tree.CreateDiskTreeFile(Output("grid.vpt"), 0));
}

TEST_F(ConstructTreeTest, FailsCleanlyWhereFilesCannotBeWritten) {
    const std::vector<VpcPoint3D> points = randomPoints(3000, 9);
    VpcConstructTree tree(Output("missing/folder/"), Tree_Octree, 200, 6, false);
    tree.InitializeRootNode({0, 0, -6, 100, 60, 6});
    tree.AddPoints(points.data(), points.size());
    EXPECT_EQ(tree.UntakenPoints(), 0U);
    EXPECT_FALSE(tree.FinishAddData());

    VpcConstructTree good(WorkingFolder(), Tree_Octree, 200, 6, false, 1 << 20);
    good.setSubsampleType(Subsample_Random, false);
    good.InitializeRootNode({0, 0, -6, 100, 60, 6});
    good.AddPoints(points.data(), points.size());
    ASSERT_TRUE(good.FinishAddData());
    EXPECT_FALSE(good.CreateDiskTreeFile(Output("missing/out.vpt"), 0));

    VpcConstructTree empty(WorkingFolder(), Tree_Octree, 200, 6, false);
    empty.InitializeRootNode({0, 0, -6, 100, 60, 6});
    EXPECT_FALSE(empty.FinishAddData());
}

}  // namespace
