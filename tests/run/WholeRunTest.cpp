#include <algorithm>
#include <limits>
#include <random>

#include <gmock/gmock.h>

#include "support/LocaleGuard.h"
#include "support/PrepareRun.h"

namespace vpc::test {

namespace {

constexpr std::size_t readerBatch = 100000;

/// Scans on disk in a folder of their own, and what has to come of them.
class Input : public PrepareFolder {
public:
    using PrepareFolder::PrepareFolder;

    std::vector<std::string> files;
    std::vector<std::vector<PointRecord>> points;
    std::size_t firstBatch = readerBatch;

    /// The file to write the next scan into.
    std::string next(const std::string& extension) {
        files.push_back(file(std::to_string(files.size()) + "." + extension));
        return files.back();
    }
    int index() const { return static_cast<int>(points.size()); }
    void addLas(const LasLayout& layout, const Cloud& cloud, const char* extension = "las") {
        points.push_back(writeLas(next(extension), layout, makeCloud(cloud), index()));
    }
    void addPts(const std::vector<std::vector<PointRecord>>& blocks, int columns = 7,
                const char* extension = "pts") {
        points.push_back(writePts(next(extension), columns, blocks, index()));
    }
    void addPtx(const std::vector<PtxScan>& scans) {
        points.push_back(writePtx(next("ptx"), scans, index()));
    }
    /// Prepares the input twice and holds the result against the model and against the input.
    /// Returns the run's message and the number of points that no node could take.
    std::pair<std::string, Word> expectRightTree(const ReferenceSettings& settings) const {
        const auto statistics = statisticsOf(points, firstBatch);
        Word lost = 0;
        const std::string modelled = referenceTreeFile(points, statistics, settings, &lost);
        TreePrepareResult result;
        for (int run = 0; run < 2; ++run) {
            result = prepare(files, work(), output(), settings);
            EXPECT_TRUE(result.success) << result.message.utf8_string();
            EXPECT_FALSE(result.elapsedTime.empty());
            EXPECT_TRUE(std::filesystem::is_empty(work())) << "temporary files are left";
            EXPECT_TRUE(isTree(readBytes(output()), modelled));
        }
        const TreeFile made = tree();
        std::multiset<std::string> expected, stored;
        for (const auto& scan : points)
            for (PointRecord point : scan) {
                if (statistics.is16bitColour) point.narrowColours();
                if (point.isFinite()) expected.insert(point.bytes());
            }
        for (const PointRecord& point : made.pointsOf(made.levels.size() - 1))
            stored.insert(point.bytes());
        EXPECT_TRUE(lost > 0 || stored == expected);
        return {result.message.utf8_string(), lost};
    }
};

}  // namespace

TEST(WholeRun, ReadsEveryLasFormatOfEveryVersion) {
    for (int format = 0; format <= 10; ++format) {
        for (int minor = 0; minor <= 4; ++minor) {
            SCOPED_TRACE(testing::Message() << "format " << format << ", version 1." << minor);
            Input input;
            const auto seed = static_cast<unsigned>(format + 20 * minor);
            input.addLas({minor, format, (format + minor) % 3},
                         {CloudShape::Uniform, 700, seed, format % 2 == 0 ? 65535u : 255u});
            input.expectRightTree({4, minor % 2 == 1, 64, 8});
        }
    }
}

TEST(WholeRun, ReadsEveryPtsColumnCountInSeveralBlocksAndFiles) {
    for (const int columns : {3, 4, 6, 7}) {
        for (const unsigned largestColour : {255u, 65535u}) {
            SCOPED_TRACE(testing::Message() << columns << " columns, colour " << largestColour);
            const auto block = [&](std::size_t points, unsigned largest) {
                return makeCloud({CloudShape::Clusters, points, largest, largest});
            };
            Input input;
            // The first block is a batch: it alone decides on the colour depth.
            input.firstBatch = 300;
            input.addPts({block(300, largestColour), block(500, 255 + 65535 - largestColour)},
                         columns);
            input.addPts({block(900, 65535)}, columns, "PTS");
            input.expectRightTree({9, columns < 5, 100, 20});
        }
    }
}

TEST(WholeRun, ReadsPtxWithSeveralScansEmptyCellsAndNoColour) {
    const std::array<double, 12> turned{0.8, 0.6, 0, -0.6, 0.8, 0, 0, 0, 1, 10.5, -20.25, 1e5};
    for (const bool hasColour : {true, false}) {
        SCOPED_TRACE(hasColour ? "with colour" : "without colour");
        PtxScan plain{makeCloud({CloudShape::Uniform, 400, 1})};
        PtxScan moved{makeCloud({CloudShape::Flat, 600, 2}), turned, 7};
        plain.hasColour = moved.hasColour = hasColour;
        PtxScan other = moved;
        other.hasColour = !hasColour;
        Input input;
        input.addPtx({plain, moved, other});
        input.addPtx({moved, plain});
        for (const bool isKdTree : {false, true}) input.expectRightTree({0, isKdTree, 50, 6});
    }
}

// The colour depth is that of the first batch of the first scan, right or wrong; the maxima are
// those of all scans, or of the last alone where the scans are LAS.
TEST(WholeRun, TakesColourDepthFromTheFirstScanAndMaximaFromTheReader) {
    for (const unsigned firstColour : {255u, 65535u}) {
        const Cloud first{CloudShape::Uniform, 500, 1, firstColour};
        const Cloud second{CloudShape::Uniform, 500, 2, 255u + 65535u - firstColour};
        Input las, pts;
        las.addLas({}, first);
        las.addLas({4, 7, 3}, second, "LAS");
        las.expectRightTree({1, false, 80, 10});
        pts.addPts({makeCloud(first)});
        pts.addPts({makeCloud(second)});
        pts.expectRightTree({1, true, 80, 10});
    }
}

class ModelledRun : public testing::TestWithParam<int> {};

// Random scans of every shape under settings from the everyday to the absurd.
TEST_P(ModelledRun, IsTheModelByteForByte) {
    const Word capacities[] = {0, 1, 2, 3, 10, 100, 1000};
    const Word depths[] = {0, 1, 2, 3, 6, 12, 40};
    std::mt19937 engine(static_cast<unsigned>(GetParam()));
    const auto pick = [&](Word count) { return engine() % count; };
    for (int round = 0; round < 12; ++round) {
        ReferenceSettings settings;
        settings.hostValue = pick(1000000);
        settings.isKdTree = pick(2) == 1;
        settings.maxPointsPerNode = capacities[pick(std::size(capacities))];
        // Small nodes in a deep tree would make files of many levels of nothing.
        settings.maxLevel = depths[pick(settings.maxPointsPerNode < 10 ? 4 : std::size(depths))];
        testing::Message trace;
        trace << "round " << round << ", kd " << settings.isKdTree << ", capacity "
              << settings.maxPointsPerNode << ", level " << settings.maxLevel << ", shapes";
        Input input;
        for (Word scan = 0; scan <= pick(3); ++scan) {
            const Cloud cloud{static_cast<CloudShape>(pick(6)), 1 + pick(1500),
                              static_cast<unsigned>(engine()), pick(2) == 1 ? 255u : 65535u};
            trace << " " << static_cast<int>(cloud.shape) << "*" << cloud.points;
            input.addPts({makeCloud(cloud)});
        }
        SCOPED_TRACE(trace);
        input.expectRightTree(settings);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ModelledRun, testing::Range(1, 9));

TEST(WholeRun, IsTheModelOverSeveralBatches) {
    Input input;
    input.addLas({}, {CloudShape::Clusters, 2 * readerBatch, 5});
    input.addLas({}, {CloudShape::Uniform, readerBatch + 1, 6});
    input.expectRightTree({0, false, 5000, 12});
    input.expectRightTree({0, true, 900, 30});
}

TEST(WholeRun, LeavesOutPointsOutOfAllBoundsAndSaysSo) {
    auto cloud = makeCloud({CloudShape::Uniform, 300, 1, 65535});
    const double infinity = std::numeric_limits<double>::infinity();
    const double bad[] = {std::numeric_limits<double>::quiet_NaN(), infinity, -1e308, 1e66,
                          -infinity};
    for (std::size_t i = 0; i < 30; ++i) {
        PointRecord& point = cloud[i * i % cloud.size()];
        (i % 2 == 0 ? point.x : point.z) = bad[i % 5];
        point.red = 65535, point.intensity = 1e9;
    }
    const auto nonFinite =
        std::count_if(cloud.begin(), cloud.end(), [](const auto& p) { return !p.isFinite(); });
    Input input;
    input.addPts({cloud});
    EXPECT_THAT(input.expectRightTree({0, false, 40, 6}).first,
                testing::HasSubstr(std::to_string(nonFinite)));
}

// At 1e13 neighbouring doubles lie two thousandths apart: the margins vanish and boxes cannot be
// halved for ever. Nodes that cannot be cut grow; points on the far faces that no child takes are
// counted aloud.
TEST(WholeRun, StopsSplittingWhereCoordinatesRunOutOfPrecision) {
    auto cloud = makeCloud({CloudShape::Uniform, 400, 3});
    for (PointRecord& point : cloud) {
        point.x = 1e13 + 0.01 * std::floor(point.x / 20);
        point.y = -1e13 + 0.01 * std::floor(point.y / 20);
        point.z = 1e13 + 0.01 * std::floor(point.z / 10);
    }
    Input input;
    input.addPts({cloud});
    for (const bool isKdTree : {false, true}) {
        const auto [message, lost] = input.expectRightTree({0, isKdTree, 10, 50});
        EXPECT_GT(lost, 0u);
        EXPECT_THAT(message, testing::HasSubstr(std::to_string(lost)));
    }
}

// More equal points than a leaf holds are cut apart in vain until the boxes cannot be halved.
TEST(WholeRun, KeepsPilesOfEqualPoints) {
    auto cloud = makeCloud({CloudShape::Uniform, 200, 4});
    cloud.insert(cloud.begin() + 100, 30, cloud[7]);
    cloud.insert(cloud.end(), 12, cloud[50]);
    Input input;
    input.addPts({cloud}, 6);
    input.expectRightTree({0, true, 10, 70});
    input.expectRightTree({0, false, 10, 25});
    input.expectRightTree({0, false, 10, 1000});
}

TEST(WholeRun, TakesASinglePointAndATextWithoutNumbers) {
    Input input;
    input.addPts({makeCloud({CloudShape::Uniform, 1, 1})});
    input.expectRightTree({});
    // Where the second line does not tell the columns the reader delivers its buffer as it is,
    // fresh here; a text without a count is one point.
    writeBytes(input.files[0], "no numbers\nat all\n");
    input.points = {{PointRecord()}};
    input.points[0][0].sourceIndex = -1;
    input.expectRightTree({});
}

TEST(WholeRun, TakesPathsOfAnyScriptInAnyLocale) {
    for (const char* locale : {"C", "de_DE.UTF-8"}) {
        SCOPED_TRACE(locale);
        const LocaleGuard guard(locale);
        Input input("Größe 点群 \xF0\x9F\x93\x90");
        input.addPts({makeCloud({CloudShape::Uniform, 300, 1})});
        input.expectRightTree({0, false, 50, 5});
    }
}

}  // namespace vpc::test
