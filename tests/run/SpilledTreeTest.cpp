#include <algorithm>
#include <cmath>
#include <fstream>
#include <random>

#include <malloc.h>
#include <unistd.h>

#include "io/PlyIO.h"
#include "support/PrepareRun.h"
#include "tree/construct/VpcConstructTree.h"

namespace vpc::test {

namespace {

using Scans = std::vector<std::vector<PointRecord>>;
/// Points that are packed in one way, and points that are packed ever wider.
enum class Values { Random, Widening };
enum class Order { Scanner, Random };

constexpr CoordinateGrid grids[] = {{{0.001, 0.001, 0.001}, {0, -0.0, 5}},
                                    {{0.01, 0.0025, 1e-7}, {-3, 1, 0}}};
constexpr Word noMemory = 0, leastMemory = 1, someMemory = 400000, enoughMemory = 100000000;

/// A scanner comes along strips.
void sortAsScanned(std::vector<PointRecord>& scan) {
    const auto strip = [](const PointRecord& p) { return std::pair(std::floor(p.x / 5), p.y); };
    std::stable_sort(scan.begin(), scan.end(),
                     [&](const auto& a, const auto& b) { return strip(a) < strip(b); });
}

/// Lets the points begin on a grid, with one colour or grey ones and whole intensities; then comes
/// one field after the other that takes more room.
void widen(std::vector<PointRecord>& scan, int source) {
    const CoordinateGrid& grid = grids[source];
    const auto toGrid = [&](double& value, std::size_t axis) {
        const double steps = std::round((value - grid.offset[axis]) / grid.scale[axis]);
        value = steps * grid.scale[axis] + grid.offset[axis];
    };
    for (std::size_t i = 0; i < scan.size(); ++i) {
        PointRecord& p = scan[i];
        const auto begins = [&](std::size_t part) { return i >= part * scan.size() / 8; };
        if (!begins(4)) p.intensity = std::round(p.intensity);
        const auto grey = static_cast<std::uint16_t>(static_cast<std::int16_t>(p.intensity));
        if (!begins(1)) p.red = p.green = p.blue = source != 0 ? grey : 7;
        if (begins(2)) p.red = static_cast<std::uint16_t>(p.red * 257);
        if (begins(3)) p.scannerDistance = p.x;
        if (begins(5)) p.markerId = static_cast<int>(i);
        p.sourceIndex = source;
        if (!begins(6)) toGrid(p.x, 0), toGrid(p.y, 1), toGrid(p.z, 2);
        if (begins(7) && i % 64 == 0) p.x = -0.0;
    }
}

/// What has become of points on their way: bytes in the temporary file for all nodes, and points of
/// frozen leaves, in all, those handed on before the end nodes were listed, and those that waited.
struct Used {
    Word spilled = 0, frozen = 0, handedOn = 0, kept = 0;

    void expectAll() const {
        EXPECT_TRUE(spilled != 0 && frozen != 0 && handedOn != 0 && kept != 0)
            << spilled << " " << frozen << " " << handedOn << " " << kept;
    }
};

/// A tree that is constructed over made-up points without the driver, and what has to come of it.
class Construction {
public:
    Construction(Used& used, CloudShape shape, const ReferenceSettings& settings,
                 Values values = Values::Random, Order order = Order::Random,
                 unsigned largestColour = 65535)
        : used_(used), settings_(settings) {
        if (values == Values::Random)
            scans_ = {makeCloud({shape, 20000, 9, largestColour})};
        else
            scans_ = {makeCloud({shape, 12000, 3}), makeCloud({shape, 12000, 4})};
        for (std::size_t i = 0; i < scans_.size(); ++i) {
            if (order == Order::Scanner) sortAsScanned(scans_[i]);
            if (values == Values::Widening) widen(scans_[i], static_cast<int>(i));
        }
        // Whole colours show more than their high bytes.
        statistics_ = statisticsOf(scans_, values == Values::Widening ? 0 : scans_[0].size());
        modelled = referenceTreeFile(scans_, statistics_, settings);
        for (const auto& scan : scans_) {
            for (const PointRecord& p : scan) {
                points_.emplace_back(p.x, p.y, p.z, p.red, p.green, p.blue, p.intensity,
                                     p.sourceIndex, p.scannerDistance);
                points_.back().markerId = p.markerId;
                box_.UpdateRegionOfInterest(points_.back());
            }
        }
        box_.AddMargin(box_.sortedSides.front().second / 10000);
    }

    /// The tree before the first point.
    std::unique_ptr<VpcConstructTree> start(Word memory, bool seedFromDevice = false) const {
        auto tree = std::make_unique<VpcConstructTree>(
            toWx(folder.work()), settings_.isKdTree ? Tree_KdTree_Symmetric : Tree_Octree,
            settings_.maxPointsPerNode, settings_.maxLevel, statistics_.is16bitColour, memory);
        // With memory the small file is treated as a large one, and the temporary file as one that
        // becomes large.
        if (memory != 0) tree->SetLargeFile(128U << 10U);
        // By the grid is the tree's own default.
        if (!settings_.thinsByGrid) tree->setSubsampleType(Subsample_Random, seedFromDevice);
        tree->InitializeRootNode(box_);
        tree->maxRed = statistics_.maxRed;
        tree->maxGreen = statistics_.maxGreen;
        tree->maxBlue = statistics_.maxBlue;
        tree->maxIntensity = statistics_.maxIntensity;
        return tree;
    }
    void add(VpcConstructTree& tree, std::size_t first, std::size_t last) const {
        constexpr std::size_t batch = 1500;
        const std::size_t scanSize = scans_.front().size();
        for (std::size_t i = first; i < last; i += batch) {
            if (scans_.size() > 1 && i % scanSize == 0) tree.BeginScan(grids[i / scanSize]);
            tree.AddPoints(&points_[i], std::min(batch, last - i));
            tree.FlushBuffersToDisk(100);
        }
    }
    /// Lists the end nodes, and notes what was done with the points until then.
    void listEndNodes(VpcConstructTree& tree) const {
        used_.spilled += folder.spilledBytes();
        used_.frozen += tree.Root()->FrozenPoints();
        std::vector<std::pair<VpcConstructNode*, Word>> leaves;
        for (const auto& level : tree.Levels())
            for (VpcConstructNode* node : level)
                if (node->Children().empty()) leaves.emplace_back(node, node->FrozenPoints());
        EXPECT_TRUE(tree.BuildEndNodeList()) << tree.FailureReason();
        for (const auto& [leaf, points] : leaves) used_.handedOn += points - leaf->FrozenPoints();
        used_.kept += tree.Root()->FrozenPoints();
    }
    /// The tree, finished.
    std::unique_ptr<VpcConstructTree> tree(Word memory, bool seedFromDevice = false) const {
        auto tree = start(memory, seedFromDevice);
        add(*tree, 0, points());
        listEndNodes(*tree);
        EXPECT_TRUE(tree->FinishAddData()) << tree->FailureReason();
        return tree;
    }
    std::string written(const std::unique_ptr<VpcConstructTree>& tree) const {
        EXPECT_TRUE(tree->CreateDiskTreeFile(toWx(folder.output()), settings_.hostValue))
            << tree->FailureReason();
        return readBytes(folder.output());
    }
    std::size_t points() const { return points_.size(); }

    const PrepareFolder folder;
    std::string modelled;

private:
    Used& used_;
    ReferenceSettings settings_;
    Scans scans_;
    ReferenceStatistics statistics_;
    std::vector<VpcPoint3D> points_;
    VpcBoundingBoxAxisAligned box_;
};

}  // namespace

// How much of the points waits in memory, and so which of them pass through which temporary file
// when, must not show in the result.
TEST(SpilledTree, IsTheModelWhateverTheMemory) {
    const std::pair<CloudShape, Values> clouds[] = {{CloudShape::Uniform, Values::Random},
                                                    {CloudShape::Duplicates, Values::Random},
                                                    {CloudShape::Clusters, Values::Widening}};
    const auto expectModel = [&](Used& used, bool isKdTree, Order order, bool thinsByGrid) {
        for (const auto& [shape, values] : clouds) {
            // A grid has millions of cells where points are far apart.
            if (thinsByGrid && shape != CloudShape::Uniform) continue;
            const Construction construction(
                used, shape, {77, isKdTree, 150, isKdTree ? 20u : 8u, thinsByGrid}, values, order);
            for (const Word memory : {noMemory, leastMemory, someMemory, enoughMemory}) {
                // Making thousands of files is slow.
                if (memory == noMemory && (order == Order::Scanner || thinsByGrid)) continue;
                if (memory == enoughMemory && thinsByGrid) continue;
                SCOPED_TRACE(testing::Message()
                             << "kd " << isKdTree << ", grid " << thinsByGrid << ", shape "
                             << static_cast<int>(shape) << ", order " << static_cast<int>(order)
                             << ", memory " << memory);
                EXPECT_TRUE(
                    isTree(construction.written(construction.tree(memory)), construction.modelled));
                EXPECT_TRUE(construction.folder.holdsOnly({"t.vpt"}));
            }
        }
    };
    for (const bool isKdTree : {false, true})
        for (const Order order : {Order::Scanner, Order::Random}) {
            Used used;
            for (const bool thinsByGrid : {false, true})
                expectModel(used, isKdTree, order, thinsByGrid);
            used.expectAll();
        }
}

// A second list of end nodes takes the leaves of the first one on, which stand deeper by then.
TEST(SpilledTree, TakesPointsAfterItsEndNodesAreListed) {
    for (const bool isKdTree : {false, true}) {
        Used used;
        const Construction construction(used, CloudShape::Clusters,
                                        {1, isKdTree, 150, isKdTree ? 20u : 8u}, Values::Widening);
        std::vector<std::string> results;
        for (const Word memory : {enoughMemory, leastMemory, someMemory}) {
            const auto tree = construction.start(memory);
            construction.add(*tree, 0, construction.points() / 2);
            construction.listEndNodes(*tree);
            construction.add(*tree, construction.points() / 2, construction.points());
            construction.listEndNodes(*tree);
            EXPECT_TRUE(tree->FinishAddData()) << tree->FailureReason();
            results.push_back(construction.written(tree));
            EXPECT_TRUE(isTree(results.back(), results.front())) << isKdTree << memory;
        }
        used.expectAll();
        const TreeFile file(results.front());
        EXPECT_EQ(file.pointsOf(file.levels.size() - 1).size(), construction.points());
    }
}

TEST(SpilledTree, KeepsNoMorePointsInMemoryThanItShall) {
    constexpr Word memory = 2U << 20U, points = 600000, packedPoint = 20;
    // Nodes and buffers need a little, too. The sanitizer keeps much of what was freed.
#if defined(__SANITIZE_ADDRESS__)
    constexpr Word room = 1U << 30U;
#else
    constexpr Word room = 6U << 20U;
    static_assert(memory + room < points * packedPoint);
#endif
    const auto residentBytes = [] {
        Word pages = 0;
        std::ifstream("/proc/self/statm") >> pages >> pages;
        return pages * static_cast<Word>(sysconf(_SC_PAGESIZE));
    };
    malloc_trim(0);
    const Word before = residentBytes();
    for (const Order order : {Order::Scanner, Order::Random}) {
        const PrepareFolder folder;
        VpcConstructTree tree(toWx(folder.work()), Tree_Octree, 5000, 10, false, memory);
        tree.setSubsampleType(Subsample_Random, false);
        tree.InitializeRootNode({0, 0, 0, 65536, 65536, 65536});
        tree.BeginScan(CoordinateGrid{{1, 1, 1}, {0, 0, 0}});
        std::vector<VpcPoint3D> batch(5000);
        Word largest = 0;
        const auto look = [&] { largest = std::max(largest, residentBytes()); };
        std::mt19937 engine(1);
        const auto next = [&] { return static_cast<std::uint16_t>(engine()); };
        for (Word i = 0; i < points; i += batch.size(), look()) {
            for (VpcPoint3D& p : batch) {
                const double x = order == Order::Random ? next() : static_cast<double>(i) / 10;
                p.SetValues(std::floor(x), next(), next(), next(), next(), next(), 1, 0, 1);
            }
            tree.AddPoints(batch.data(), batch.size());
        }
        EXPECT_GE(folder.spilledBytes() + memory, packedPoint * points);
        tree.SetFinishProgress([&](Word, Word) { look(); });
        tree.SetProgress([&](Word, Word) { look(); });
        ASSERT_TRUE(tree.FinishAddData()) << tree.FailureReason();
        ASSERT_TRUE(tree.CreateDiskTreeFile(toWx(folder.output()), 0)) << tree.FailureReason();
        EXPECT_LT(largest, before + memory + room) << "order " << static_cast<int>(order);
    }
}

TEST(SpilledTree, CanBeThinnedAnewEveryTime) {
    Used used;
    const Construction construction(used, CloudShape::Uniform, {1, false, 150, 8});
    const TreeFile modelled(construction.modelled);
    const TreeFile made(construction.written(construction.tree(noMemory, true)));
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
        Used used;
        const Construction construction(used, CloudShape::Clusters, {1, true, 150, 8, thinsByGrid},
                                        Values::Random, Order::Random, 255);
        const TreeFile modelled(construction.modelled);
        const auto tree = construction.tree(someMemory);
        used.expectAll();
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
