#include "io/PlyIO.h"
#include "support/PrepareRun.h"
#include "tree/construct/VpcConstructTree.h"

namespace vpc::test {

namespace {

/// A tree that is constructed over made-up points without the driver, and what has to come of it.
class Construction {
public:
    Construction(CloudShape shape, const ReferenceSettings& settings,
                 unsigned largestColour = 65535)
        : settings_(settings), cloud_(makeCloud({shape, 20000, 9, largestColour})) {
        statistics_ = statisticsOf({cloud_}, cloud_.size());
        modelled = referenceTreeFile({cloud_}, statistics_, settings);
        for (const PointRecord& p : cloud_) {
            points_.emplace_back(p.x, p.y, p.z, p.red, p.green, p.blue, p.intensity, p.sourceIndex,
                                 p.scannerDistance);
            box_.UpdateRegionOfInterest(points_.back());
        }
        box_.AddMargin(box_.sortedSides.front().second / 10000);
    }

    /// The tree, finished.
    std::unique_ptr<VpcConstructTree> tree(Word memory, bool seedFromDevice = false) const {
        auto tree = std::make_unique<VpcConstructTree>(
            toWx(folder.work()), settings_.isKdTree ? Tree_KdTree_Symmetric : Tree_Octree,
            settings_.maxPointsPerNode, settings_.maxLevel, statistics_.is16bitColour, memory);
        // By the grid is the tree's own default.
        if (!settings_.thinsByGrid) tree->setSubsampleType(Subsample_Random, seedFromDevice);
        tree->InitializeRootNode(box_);
        for (std::size_t i = 0; i < points_.size(); i += 1700) {
            tree->AddPoints(&points_[i], std::min<std::size_t>(1700, points_.size() - i));
            tree->FlushBuffersToDisk(100);
        }
        tree->maxRed = statistics_.maxRed;
        tree->maxGreen = statistics_.maxGreen;
        tree->maxBlue = statistics_.maxBlue;
        tree->maxIntensity = statistics_.maxIntensity;
        EXPECT_TRUE(tree->FinishAddData());
        return tree;
    }
    std::string written(const std::unique_ptr<VpcConstructTree>& tree) const {
        EXPECT_TRUE(tree->CreateDiskTreeFile(toWx(folder.output()), settings_.hostValue));
        return readBytes(folder.output());
    }

    const PrepareFolder folder;
    std::string modelled;

private:
    ReferenceSettings settings_;
    std::vector<PointRecord> cloud_;
    ReferenceStatistics statistics_;
    std::vector<VpcPoint3D> points_;
    VpcBoundingBoxAxisAligned box_;
};

}  // namespace

// How much of the points waits in memory, and so which of them pass through which temporary file
// when, must not show in the result.
TEST(SpilledTree, IsTheModelWhateverTheMemory) {
    for (const CloudShape shape :
         {CloudShape::Uniform, CloudShape::Clusters, CloudShape::Duplicates})
        for (const bool isKdTree : {false, true})
            for (const bool thinsByGrid : {false, true}) {
                // A grid has millions of cells where points are far apart.
                if (thinsByGrid && shape != CloudShape::Uniform) continue;
                const Construction construction(
                    shape, {77, isKdTree, 150, isKdTree ? 20u : 8u, thinsByGrid});
                for (const Word memory : {0U, 1U, 5000U, 50000U, 400000U, 100000000U}) {
                    if (thinsByGrid && memory != 0 && memory != 5000) continue;
                    SCOPED_TRACE(testing::Message()
                                 << "kd " << isKdTree << ", grid " << thinsByGrid << ", shape "
                                 << static_cast<int>(shape) << ", memory " << memory);
                    EXPECT_TRUE(isTree(construction.written(construction.tree(memory)),
                                       construction.modelled));
                    EXPECT_TRUE(construction.folder.holdsOnly({"t.vpt"}));
                }
            }
}

TEST(SpilledTree, CanBeThinnedAnewEveryTime) {
    const Construction construction(CloudShape::Uniform, {1, false, 150, 8});
    const TreeFile modelled(construction.modelled);
    const TreeFile made(construction.written(construction.tree(0, true)));
    const auto bytesOf = [](const TreeFile& file, std::size_t level) {
        std::string bytes;
        for (const PointRecord& point : file.pointsOf(level)) bytes += point.bytes();
        return bytes;
    };
    ASSERT_EQ(made.levels.size(), modelled.levels.size());
    EXPECT_NE(bytesOf(made, 1), bytesOf(modelled, 1)) << "seeded by the device";
    EXPECT_TRUE(bytesOf(made, made.levels.size() - 1) ==
                bytesOf(modelled, modelled.levels.size() - 1));
}

// With point memory drawn samples are taken only while the tree file is written, and must be shown
// all the same.
TEST(SpilledTree, WritesTheNodesOfALevelForInspection) {
    for (const bool thinsByGrid : {true, false}) {
        const Construction construction(CloudShape::Clusters, {1, true, 150, 8, thinsByGrid}, 255);
        const TreeFile modelled(construction.modelled);
        const auto tree = construction.tree(thinsByGrid ? 0 : 1U << 20U);
        const TempFolder folder;
        const wxString prefix = toWx(folder.file(""));
        // There is one level fewer than are asked for.
        for (std::size_t level = 0; level <= modelled.levels.size(); ++level) {
            Word points = 1000, expected = 1000;
            EXPECT_TRUE(tree->WriteNodePointsTreeAtLevel(level, prefix, points));
            const std::size_t nodes =
                level < modelled.levels.size() ? modelled.levels[level].size() : 0;
            for (std::size_t n = 0; n < nodes; ++n) {
                std::vector<VpcPoint3D> vertices;
                for (const PointRecord& p : modelled.levels[level][n].points)
                    vertices.emplace_back(p.x, p.y, p.z, p.red, p.green, p.blue);
                expected += vertices.size();
                PlyIO::WriteVertices(vertices, toWx(folder.file("expected")));
                const std::string name = "Level-" + std::to_string(level) + "-Node-" +
                                         std::to_string(1000 + n).substr(1) + ".ply";
                EXPECT_EQ(readBytes(folder.file(name)),
                          vertices.empty() ? "" : readBytes(folder.file("expected")));
            }
            EXPECT_EQ(points, expected);
        }
        Word points = 0;
        EXPECT_FALSE(tree->WriteNodePointsTreeAtLevel(0, prefix + "none/", points));
        EXPECT_TRUE(isTree(construction.written(tree), construction.modelled));
        EXPECT_FALSE(tree->WriteNodePointsTreeAtLevel(0, prefix, points)) << "they are gone";
    }
}

}  // namespace vpc::test
