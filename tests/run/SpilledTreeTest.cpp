#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/PrepareRun.h"
#include "support/ReferenceTree.h"
#include "support/ScanFiles.h"
#include "tree/construct/VpcConstructTree.h"

namespace vpc::test {

namespace {

std::vector<VpcPoint3D> asLibraryPoints(const std::vector<PointRecord>& records) {
    std::vector<VpcPoint3D> points;
    for (const PointRecord& p : records)
        points.emplace_back(p.x, p.y, p.z, p.red, p.green, p.blue, p.intensity, p.sourceIndex,
                            p.scannerDistance);
    return points;
}

/// The driver's box around `points`.
VpcBoundingBoxAxisAligned boxAround(const std::vector<VpcPoint3D>& points) {
    VpcBoundingBoxAxisAligned box;
    for (const VpcPoint3D& point : points) box.UpdateRegionOfInterest(point);
    box.AddMargin(box.sortedSides.front().second / 10000);
    return box;
}

}  // namespace

// How much of the points waits in memory, and so which of them pass through which temporary file
// when, must not show in the result.
TEST(SpilledTree, IsTheModelWhateverTheMemory) {
    for (const bool isKdTree : {false, true}) {
        for (const CloudShape shape :
             {CloudShape::Uniform, CloudShape::Clusters, CloudShape::Duplicates}) {
            const std::vector<PointRecord> cloud = makeCloud({shape, 20000, 9, 65535});
            const std::vector<VpcPoint3D> points = asLibraryPoints(cloud);
            const ReferenceSettings settings{77, isKdTree, 150, isKdTree ? 20u : 8u};
            const ReferenceStatistics statistics = statisticsOf({cloud}, cloud.size(), false);
            const std::string modelled = referenceTreeFile({cloud}, statistics, settings);
            for (const unsigned long long memory :
                 {0ULL, 1ULL, 5000ULL, 50000ULL, 400000ULL, 100000000ULL}) {
                SCOPED_TRACE("kd " + std::to_string(isKdTree) + ", shape " +
                             std::to_string(static_cast<int>(shape)) + ", memory " +
                             std::to_string(memory));
                const PrepareFolder folder;
                {
                    VpcConstructTree tree(toWx(folder.work()),
                                          isKdTree ? Tree_KdTree_Symmetric : Tree_Octree,
                                          settings.maxPointsPerNode, settings.maxLevel,
                                          statistics.is16bitColour, memory);
                    tree.setSubsampleType(Subsample_Random, false);
                    tree.InitializeRootNode(boxAround(points));
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
                EXPECT_TRUE(folder.holdsOnly({"result.vpt"}));
            }
        }
    }
}

}  // namespace vpc::test
