// Makes a tree file with so little memory that points go through temporary files, for which
// `vpc prepare` needs far larger scans than a test's.
// Usage: vpc_spilling_prepare MEMORY WORK_FOLDER/ OUT.vpt; with no memory every node has a file.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <vector>

#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "tree/construct/VpcConstructTree.h"

namespace {

bool prepare(unsigned long long memory, const char* work, const char* output) {
    VpcConstructTree tree(work, Tree_KdTree_Symmetric, 15000, 4, false, memory);
    tree.setSubsampleType(Subsample_Random, false);
    constexpr double side = 1U << 24U;
    tree.InitializeRootNode(VpcBoundingBoxAxisAligned(0, 0, 0, side, side, side));
    unsigned state = 1;
    const auto next = [&state] { return (state = state * 1664525U + 1013904223U) >> 8U; };
    std::vector<VpcPoint3D> points(5000);
    for (int batch = 0; batch < 4; ++batch) {
        for (VpcPoint3D& point : points) point.SetCoordinates(next(), next(), next());
        tree.AddPoints(points.data(), points.size());
        tree.FlushBuffersToDisk(100);
    }
    if (tree.FinishAddData() && tree.CreateDiskTreeFile(output, 1)) return true;
    std::fputs(tree.FailureReason().utf8_str(), stderr);
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        if (argc == 4 && prepare(std::strtoull(argv[1], nullptr, 10), argv[2], argv[3])) return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    return 1;
}
