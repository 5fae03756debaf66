#include "tree/construct/VpcConstructTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "core/geometry/DimensionRatios.h"
#include "support/PrepareRun.h"
#include "tree/construct/VpcPointGrid3D.h"

namespace {

VpcPoint3D pointAt(double x, double y, double z) {
    return {x, y, z, 1, 2, 3, 4.0, 0, 1.0};
}

TEST(DimensionRatios, DivideTheRootIntoAboutCubes) {
    using Ratios = VpcTriplet<unsigned long long>;
    const std::tuple<double, double, double, Ratios> cases[] = {
        {100, 10, 1, {100, 10, 1}}, {1, 1, 2, {1, 1, 2}},         {1, 1.5, 1, {2, 2, 2}},
        {1, 1.50015, 1, {1, 2, 1}}, {1.50005, 1, 1.2, {2, 2, 2}}, {1.50005, 1.2, 1, {2, 1, 1}}};
    for (const auto& [x, y, z, ratios] : cases)
        EXPECT_TRUE(vpc::dimensionRatios(x, y, z) == ratios) << x << ' ' << y << ' ' << z;
}

// Where points come in no order the tree remembers which leaf holds which part of the box.
TEST(ConstructTree, PutsPointsOnTheSidesOfItsCellsWhereTheyBelong) {
    std::mt19937 engine(1);
    for (const double offset : {0.0, 123456.7, 1e9}) {
        const vpc::test::PrepareFolder folder;
        VpcConstructTree tree(vpc::test::toWx(folder.work()), Tree_Octree, 50, 12, false,
                              1U << 22U);
        const double low = offset, high = offset + 64.0;
        tree.InitializeRootNode({low, low, low, high, high, high});
        const auto& box = tree.Root()->Box();
        const auto drawn = [&](unsigned from) { return static_cast<double>(engine() % from); };
        const auto coordinate = [&](double least, double greatest) {
            const double at = least + (greatest - least) * drawn(65) / 64.0;
            const double beside[] = {at, std::nextafter(at, least), std::nextafter(at, greatest),
                                     least + (greatest - least) * drawn(1000) / 1000.0};
            return std::clamp(beside[engine() % 4], low, high);
        };
        std::vector<VpcPoint3D> points;
        for (int i = 0; i < 60000; ++i)
            points.push_back(pointAt(coordinate(box.minPoint.x, box.maxPoint.x),
                                     coordinate(box.minPoint.y, box.maxPoint.y),
                                     coordinate(box.minPoint.z, box.maxPoint.z)));
        tree.AddPoints(points.data(), points.size());
        EXPECT_EQ(tree.UntakenPoints(), 0U);
        ASSERT_TRUE(tree.BuildEndNodeList()) << tree.FailureReason();
        std::size_t found = 0;
        for (VpcConstructNode* node : tree.Levels().back())
            for (const VpcPoint3D& p : node->GetPointsFromDisk())
                found += node->Contains(p.x, p.y, p.z) ? 1 : 0;
        EXPECT_EQ(found, points.size()) << offset;
    }
}

// The tree remembers where points have gone, and a leaf may have become a parent since.
TEST(ConstructTree, LosesNoPointWhateverMakesItsLeavesParents) {
    const auto farPoint = [](int i) { return pointAt(7.0 + 0.05 * i, 7, 7); };
    using Change = std::function<void(VpcConstructTree&, VpcConstructNode&)>;
    const std::pair<const char*, Change> changes[] = {
        {"AddPoint",
         [&](auto& tree, auto&) {
             for (int i = 0; i < 6; ++i) tree.Root()->AddPoint(farPoint(i));
         }},
        {"SplitNode", [](auto&, auto& leaf) { leaf.SplitNode(); }},
        {"SplitNodeOct",
         [](auto&, auto& leaf) {
             auto points = leaf.GetPointsFromDisk();
             leaf.SplitNodeOct(points);
         }},
        {"SplitNodeKd",
         [](auto&, auto& leaf) {
             auto points = leaf.GetPointsFromDisk();
             leaf.SplitNodeKd(points);
         }},
        {"DropNodeLevel", [](auto&, auto& leaf) { leaf.DropNodeLevel(); }},
        {"BuildEndNodeList", [](auto& tree, auto&) { EXPECT_TRUE(tree.BuildEndNodeList()); }}};
    for (const auto& [name, change] : changes) {
        for (const unsigned long long memory : {0ULL, 1ULL << 20}) {
            SCOPED_TRACE(testing::Message() << name << ", memory " << memory);
            const vpc::test::PrepareFolder folder;
            VpcConstructTree tree(vpc::test::toWx(folder.work()), Tree_Octree, 10, 5, false,
                                  memory);
            tree.InitializeRootNode({0, 0, 0, 8, 8, 8});
            std::vector<VpcPoint3D> points;
            for (int i = 0; i < 40; ++i) points.push_back(pointAt(1 + 0.02 * i, 1, 1));
            for (int i = 0; i < 3; ++i) points.push_back(farPoint(i));
            tree.AddPoints(points.data(), points.size());
            EXPECT_TRUE(tree.FlushBuffersToDisk(0));
            points = {farPoint(3), farPoint(4)};
            tree.AddPoints(points.data(), 2);
            VpcConstructNode* leaf = tree.Root()->FindLeaf(7, 7, 7);
            ASSERT_EQ(leaf->Level(), 1U);
            change(tree, *leaf);
            EXPECT_FALSE(leaf->Children().empty());
            tree.AddPoints(points.data(), 2);
            ASSERT_TRUE(tree.FinishAddData()) << tree.FailureReason();
            EXPECT_EQ(tree.UntakenPoints(), 0U);
            ASSERT_TRUE(tree.CreateDiskTreeFile(vpc::test::toWx(folder.output()), 0));
            const vpc::test::TreeFile file = folder.tree();
            EXPECT_EQ(file.pointsOf(file.levels.size() - 1).size(),
                      name == std::string("AddPoint") ? 53U : 47U);
        }
    }
}

TEST(ConstructTree, IsWrittenOnceAndFinishedOnly) {
    for (const unsigned long long memory : {0ULL, 1ULL << 20}) {
        const vpc::test::PrepareFolder folder;
        VpcConstructTree tree(vpc::test::toWx(folder.work()), Tree_Octree, 10, 8, false, memory);
        const VpcPoint3D point(0.5, 0.5, 0.5);
        tree.AddPoints(&point, 1);
        tree.InitializeRootNode(VpcBoundingBoxAxisAligned(0, 0, 0, 1, 1, 1));
        for (int i = 0; i < 50; ++i) {
            const VpcPoint3D p(0.02 * i, 0.5, 0.1);
            tree.AddPoints(&p, 1);
        }
        const wxString output = vpc::test::toWx(folder.output());
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
        const std::string written = vpc::test::readBytes(folder.output());
        EXPECT_FALSE(tree.CreateDiskTreeFile(output, 0));
        EXPECT_FALSE(tree.FinishAddData());
        EXPECT_EQ(tree.FailureReason(), "The tree has been written");
        EXPECT_EQ(vpc::test::readBytes(folder.output()), written);
        const vpc::test::TreeFile file(written);
        EXPECT_EQ(file.pointsOf(file.levels.size() - 1).size(), 50U);
        EXPECT_TRUE(largest != 0 && tree.actualMaxPointsPerNode() == largest);
        EXPECT_EQ(tree.Root()->PointsInAll(), file.levels[0][0].pointCount);
    }
}

TEST(PointGrid, RefusesAGridBeyondMemoryAloud) {
    testing::internal::CaptureStderr();
    EXPECT_THROW(VpcPointGrid3D(1.0, {0, 0, 0, 1, 1, 1}, 1ULL << 40, 1ULL << 40, 3),
                 std::bad_alloc);
    EXPECT_TRUE(testing::internal::GetCapturedStderr().starts_with(
        "## EXCEPTION ERROR while creating VpcGrid3D of "
        "1099511627776x1099511627776x3 of size 24 : bad_alloc caught : "));
}

}  // namespace
