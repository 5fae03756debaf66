// Makes a tree file with so little memory that points go through temporary files, for which
// `vpc prepare` needs far larger scans than a test's. Prints whether points of frozen leaves were
// handed on when the end nodes were listed, and whether some waited on.
// Usage: vpc_spilling_prepare MEMORY scanner|random WORK_FOLDER/ OUT.vpt; with no memory every node
// has a file.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <utility>
#include <vector>

#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "tree/construct/VpcConstructTree.h"

namespace {

constexpr double side = 1U << 24U;

std::pair<double, double> strip(const VpcPoint3D& p) {
    return {std::floor(p.x / (side / 8)), p.y};
}

std::vector<VpcPoint3D> makePoints(std::size_t count, bool asScanned) {
    unsigned state = 1;
    const auto next = [&state] { return (state = state * 1664525U + 1013904223U) >> 8U; };
    std::vector<VpcPoint3D> points(count);
    for (VpcPoint3D& point : points) {
        point.SetCoordinates(next(), next(), next());
        // Some lie close together.
        if (next() % 3 == 0) point.SetCoordinates(point.x, point.y / 64, point.z / 64);
        point.intensity = point.scannerDistance = point.x / 3;
        point.red = static_cast<std::uint16_t>(point.markerId = static_cast<std::uint16_t>(next()));
    }
    if (asScanned)
        std::sort(points.begin(), points.end(),
                  [](const VpcPoint3D& a, const VpcPoint3D& b) { return strip(a) < strip(b); });
    return points;
}

bool prepare(unsigned long long memory, bool asScanned, const char* work, const char* output) {
    // Making many files is slow.
    const unsigned long long mostPoints = memory == 0 ? 1200 : 80;
    VpcConstructTree tree(work, Tree_KdTree_Symmetric, mostPoints, 6, false, memory);
    tree.setSubsampleType(Subsample_Random, false);
    // Its files are treated as those of large scans are.
    if (memory != 0 && asScanned) tree.SetLargeFile(0);
    tree.InitializeRootNode(VpcBoundingBoxAxisAligned(0, 0, 0, side, side, side));
    constexpr std::size_t batch = 500;
    const std::vector<VpcPoint3D> points = makePoints(8 * batch, asScanned);
    for (std::size_t i = 0; i < points.size(); i += batch) {
        tree.AddPoints(&points[i], batch);
        tree.FlushBuffersToDisk(100);
    }
    std::vector<std::pair<VpcConstructNode*, unsigned long long>> leaves;
    for (const auto& level : tree.Levels())
        for (VpcConstructNode* node : level)
            if (node->Children().empty()) leaves.emplace_back(node, node->FrozenPoints());
    unsigned long long handedOn = 0;
    bool isDone = tree.BuildEndNodeList();
    if (!isDone) {
        // Once more must not make a tree without some of the points.
        std::fprintf(stderr, "%s; ", static_cast<const char*>(tree.FailureReason().utf8_str()));
        isDone = tree.BuildEndNodeList();
    }
    for (const auto& [leaf, count] : leaves) handedOn += count - leaf->FrozenPoints();
    std::printf("%d %d\n", handedOn != 0, tree.Root()->FrozenPoints() != 0);
    isDone = isDone && tree.FinishAddData() && tree.CreateDiskTreeFile(output, 1);
    if (!isDone) std::fputs(tree.FailureReason().utf8_str(), stderr);
    return isDone;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        if (argc == 5 && prepare(std::strtoull(argv[1], nullptr, 10),
                                 std::strcmp(argv[2], "scanner") == 0, argv[3], argv[4]))
            return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    return 1;
}
