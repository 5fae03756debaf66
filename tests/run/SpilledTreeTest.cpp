#include "support/PrepareRun.h"
#include "tree/construct/VpcConstructTree.h"

namespace vpc::test {

// How much of the points waits in memory, and so which of them pass through which temporary file
// when, must not show in the result.
TEST(SpilledTree, IsTheModelWhateverTheMemory) {
    for (const CloudShape shape :
         {CloudShape::Uniform, CloudShape::Clusters, CloudShape::Duplicates}) {
        const std::vector<PointRecord> cloud = makeCloud({shape, 20000, 9, 65535});
        const ReferenceStatistics statistics = statisticsOf({cloud}, cloud.size());
        std::vector<VpcPoint3D> points;
        VpcBoundingBoxAxisAligned box;
        for (const PointRecord& p : cloud) {
            points.emplace_back(p.x, p.y, p.z, p.red, p.green, p.blue, p.intensity, p.sourceIndex,
                                p.scannerDistance);
            box.UpdateRegionOfInterest(points.back());
        }
        box.AddMargin(box.sortedSides.front().second / 10000);
        for (const bool isKdTree : {false, true}) {
            const ReferenceSettings settings{77, isKdTree, 150, isKdTree ? 20u : 8u};
            const std::string modelled = referenceTreeFile({cloud}, statistics, settings);
            for (const Word memory : {0U, 1U, 5000U, 50000U, 400000U, 100000000U}) {
                SCOPED_TRACE(testing::Message()
                             << "kd " << isKdTree << ", shape " << static_cast<int>(shape)
                             << ", memory " << memory);
                const PrepareFolder folder;
                {
                    VpcConstructTree tree(toWx(folder.work()),
                                          isKdTree ? Tree_KdTree_Symmetric : Tree_Octree,
                                          settings.maxPointsPerNode, settings.maxLevel,
                                          statistics.is16bitColour, memory);
                    tree.setSubsampleType(Subsample_Random, false);
                    tree.InitializeRootNode(box);
                    for (std::size_t i = 0; i < points.size(); i += 1700) {
                        tree.AddPoints(&points[i], std::min<std::size_t>(1700, points.size() - i));
                        tree.FlushBuffersToDisk(100);
                    }
                    tree.maxRed = statistics.maxRed;
                    tree.maxGreen = statistics.maxGreen;
                    tree.maxBlue = statistics.maxBlue;
                    tree.maxIntensity = statistics.maxIntensity;
                    ASSERT_TRUE(tree.FinishAddData());
                    ASSERT_TRUE(tree.CreateDiskTreeFile(toWx(folder.output()), 77));
                }
                EXPECT_TRUE(readBytes(folder.output()) == modelled);
                EXPECT_TRUE(folder.holdsOnly({"t.vpt"}));
            }
        }
    }
}

}  // namespace vpc::test
