#include <filesystem>

#include <gtest/gtest.h>

#include "support/PrepareRun.h"
#include "support/ScanFiles.h"
#include "support/TreeFile.h"
#include "tree/construct/VpcConstructTree.h"

namespace vpc::test {

namespace {

/// The points of a tree file's deepest level.
std::size_t pointsIn(const std::string& file) {
    std::size_t points = 0;
    const TreeFile tree(readBytes(file));
    for (const TreeNode& node : tree.levels.back()) points += node.points.size();
    return points;
}

TEST(Misuse, ATreeIsWrittenOnceAndFinishedOnly) {
    for (const unsigned long long memory : {0ULL, 1ULL << 20}) {
        const PrepareFolder folder;
        VpcConstructTree tree(toWx(folder.work()), Tree_Octree, 10, 8, false, memory);
        const VpcPoint3D point(0.5, 0.5, 0.5);
        tree.AddPoints(&point, 1);
        tree.InitializeRootNode(VpcBoundingBoxAxisAligned(0, 0, 0, 1, 1, 1));
        for (int i = 0; i < 50; ++i) {
            const VpcPoint3D p(0.02 * i, 0.5, 0.1);
            tree.AddPoints(&p, 1);
        }
        const wxString output = toWx(folder.output());
        EXPECT_FALSE(tree.CreateDiskTreeFile(output, 0));
        EXPECT_FALSE(std::filesystem::exists(folder.output()));
        EXPECT_EQ(tree.FailureReason(), "The tree is not finished");
        // The steps of the finishing and the finishing itself: whichever comes last does nothing.
        ASSERT_TRUE(tree.BuildEndNodeList() && tree.PopulateParentNodes());
        ASSERT_TRUE(tree.PopulateParentNodes() && tree.BuildEndNodeList() && tree.FinishAddData());
        tree.setSubsampleType(Subsample_Random, false);
        tree.AddPoints(&point, 1);
        tree.Root()->AddPoint(point);
        VpcConstructNode* leaf = tree.EndNodes().front();
        leaf->SplitNode();
        EXPECT_EQ(leaf->DropNodeLevel(), leaf);
        EXPECT_EQ(tree.UntakenPoints(), 3U);
        const auto largest = tree.actualMaxPointsPerNode();
        ASSERT_TRUE(tree.CreateDiskTreeFile(output, 0)) << tree.FailureReason();
        const std::string written = readBytes(folder.output());
        EXPECT_FALSE(tree.CreateDiskTreeFile(output, 0));
        EXPECT_FALSE(tree.FinishAddData());
        EXPECT_EQ(tree.FailureReason(), "The tree has been written");
        EXPECT_EQ(readBytes(folder.output()), written);
        EXPECT_EQ(pointsIn(folder.output()), 50U);
        EXPECT_TRUE(largest != 0 && tree.actualMaxPointsPerNode() == largest);
        EXPECT_EQ(tree.Root()->PointsInAll(), TreeFile(written).levels[0][0].pointCount);
    }
}

/// Takes a scan away between the two passes.
class Remover : public PrepareObserver {
public:
    explicit Remover(std::string file) : file_(std::move(file)) {}
    bool onProgress(const PrepareProgress&) override { return true; }
    bool onScansMeasured(const ScanSummary&, const wxString&) override {
        return std::filesystem::remove(file_);
    }

private:
    std::string file_;
};

TEST(Misuse, AScanThatVanishesEndsTheRun) {
    const PrepareFolder folder;
    writeLas(folder.scan("a.las"), {}, makeCloud({}));
    writeLas(folder.scan("b.las"), {}, makeCloud({}));
    Remover remover(folder.scan("b.las"));
    const auto result = prepare({folder.scan("a.las"), folder.scan("b.las")}, folder.work(),
                                folder.output(), {}, &remover);
    EXPECT_FALSE(result.success);
    EXPECT_NE(result.message.find("gave 2000 points at first and 1000 when"), wxString::npos);
    EXPECT_TRUE(result.message.EndsWith("b.las cannot be opened (No such file or directory)"));
    EXPECT_FALSE(std::filesystem::exists(folder.output()));
}

TEST(Misuse, CoordinatesOutOfAllBoundsAreLeftOut) {
    const PrepareFolder folder;
    auto points = makeCloud({});
    points[0].x = 1e66;
    points[7].z = -1e308;
    writePts(folder.scan("a.pts"), 7, {points});
    const auto result = prepare({folder.scan("a.pts")}, folder.work(), folder.output());
    ASSERT_TRUE(result.success) << result.message;
    EXPECT_TRUE(result.message.StartsWith("2 points")) << result.message;
    EXPECT_EQ(pointsIn(folder.output()), points.size() - 2);
}

}  // namespace

}  // namespace vpc::test
