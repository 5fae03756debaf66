#include <algorithm>
#include <clocale>
#include <limits>
#include <random>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/PrepareRun.h"
#include "support/ReferenceTree.h"
#include "support/ScanFiles.h"
#include "support/TreeFile.h"

namespace vpc::test {

namespace {

constexpr std::size_t readerBatch = 100000;

/// Scans on disk, and what has to come of them.
struct Input {
    std::vector<std::string> files;
    std::vector<std::vector<PointRecord>> points;
    std::size_t firstBatch = readerBatch;
    /// The LAS reader begins its maxima anew with every file.
    bool isLas = false;

    ReferenceStatistics statistics() const { return statisticsOf(points, firstBatch, isLas); }
};

std::string firstDifference(const std::string& a, const std::string& b) {
    const auto at = std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin();
    return "sizes " + std::to_string(a.size()) + " and " + std::to_string(b.size()) +
           ", first difference at byte " + std::to_string(at);
}

std::vector<std::string> sortedRecords(const Input& input) {
    std::vector<std::string> records;
    const bool isNarrowed = input.statistics().is16bitColour;
    for (const auto& scan : input.points) {
        for (PointRecord point : scan) {
            if (!point.isFinite()) continue;
            if (isNarrowed) point.narrowColours();
            records.push_back(point.bytes());
        }
    }
    std::sort(records.begin(), records.end());
    return records;
}

/// Prepares the input twice and holds the result against the model and against the input.
void expectRightTree(const PrepareFolder& folder, const Input& input,
                     const ReferenceSettings& settings) {
    const TreePrepareResult result = prepare(input.files, folder.work(), folder.output(), settings);
    ASSERT_TRUE(result.success) << result.message.utf8_string();
    EXPECT_FALSE(result.elapsedTime.empty());
    EXPECT_TRUE(std::filesystem::is_empty(folder.work())) << "temporary files are left";
    const std::string bytes = readBytes(folder.output());
    unsigned long long lost = 0;
    const std::string modelled =
        referenceTreeFile(input.points, input.statistics(), settings, &lost);
    EXPECT_TRUE(bytes == modelled) << firstDifference(bytes, modelled);

    const TreeFile tree(bytes);
    EXPECT_THAT(tree.problems(), testing::IsEmpty());
    EXPECT_EQ(tree.hostValue, settings.hostValue);
    EXPECT_TRUE(lost > 0 || tree.deepestPoints() == sortedRecords(input));

    ASSERT_TRUE(prepare(input.files, folder.work(), folder.output(), settings).success);
    EXPECT_TRUE(readBytes(folder.output()) == bytes) << "a second run gives another file";
}

Input ptsInput(const PrepareFolder& folder, const std::vector<Cloud>& clouds) {
    Input input;
    for (const Cloud& cloud : clouds) {
        const int index = static_cast<int>(input.files.size());
        input.files.push_back(folder.scan("scan" + std::to_string(index) + ".pts"));
        input.points.push_back(writePts(input.files.back(), 7, {makeCloud(cloud)}, index));
    }
    return input;
}

}  // namespace

TEST(WholeRun, ReadsEveryLasFormatOfEveryVersion) {
    for (int format = 0; format <= 10; ++format) {
        for (int minor = 0; minor <= 4; ++minor) {
            SCOPED_TRACE("format " + std::to_string(format) + ", version 1." +
                         std::to_string(minor));
            const PrepareFolder folder;
            LasLayout layout;
            layout.format = format;
            layout.minorVersion = minor;
            layout.extraBytes = (format + minor) % 3;
            const Cloud cloud{CloudShape::Uniform, 700, static_cast<unsigned>(format + 20 * minor),
                              format % 2 == 0 ? 65535u : 255u};
            Input input;
            input.isLas = true;
            input.files = {folder.scan("a.las")};
            input.points = {writeLas(input.files[0], layout, makeCloud(cloud))};
            expectRightTree(folder, input, {4, minor % 2 == 1, 64, 8});
        }
    }
}

TEST(WholeRun, ReadsEveryPtsColumnCountInSeveralBlocksAndFiles) {
    for (const int columns : {3, 4, 6, 7}) {
        for (const unsigned largestColour : {255u, 65535u}) {
            SCOPED_TRACE(std::to_string(columns) + " columns, colours to " +
                         std::to_string(largestColour));
            const PrepareFolder folder;
            const auto block = [&](std::size_t points, unsigned seed) {
                return makeCloud({CloudShape::Clusters, points, seed, largestColour});
            };
            Input input;
            input.files = {folder.scan("a.PTS"), folder.scan("b.pts")};
            input.points = {writePts(input.files[0], columns, {block(300, 1), block(500, 2)}, 0),
                            writePts(input.files[1], columns, {block(900, 3)}, 1)};
            input.firstBatch = 300;
            expectRightTree(folder, input, {9, columns < 5, 100, 20});
        }
    }
}

TEST(WholeRun, ReadsPtxWithSeveralScansEmptyCellsAndNoColour) {
    const std::array<double, 12> turned{0.8, 0.6, 0, -0.6, 0.8, 0, 0, 0, 1, 10.5, -20.25, 1e5};
    for (const bool hasColour : {true, false}) {
        SCOPED_TRACE(hasColour ? "with colour" : "without colour");
        const PrepareFolder folder;
        PtxScan plain{makeCloud({CloudShape::Uniform, 400, 1})};
        PtxScan moved{makeCloud({CloudShape::Flat, 600, 2}), turned, 7};
        plain.hasColour = moved.hasColour = hasColour;
        PtxScan other = moved;
        other.hasColour = !hasColour;
        Input input;
        input.files = {folder.scan("a.ptx"), folder.scan("b.ptx")};
        input.points = {writePtx(input.files[0], {plain, moved, other}, 0),
                        writePtx(input.files[1], {moved, plain}, 1)};
        for (const bool isKdTree : {false, true})
            expectRightTree(folder, input, {0, isKdTree, 50, 6});
    }
}

// The colour depth is that of the first batch of the first scan, right or wrong; the maxima are
// those of all scans, or of the last alone where the scans are LAS.
TEST(WholeRun, TakesColourDepthFromTheFirstScanAndMaximaFromTheReader) {
    const Cloud eightBit{CloudShape::Uniform, 500, 1, 255};
    const Cloud sixteenBit{CloudShape::Uniform, 500, 2, 65535};
    for (const auto& clouds : {std::pair(eightBit, sixteenBit), std::pair(sixteenBit, eightBit)}) {
        const PrepareFolder folder;
        Input las;
        las.isLas = true;
        las.files = {folder.scan("a.las"), folder.scan("b.LAS")};
        las.points = {writeLas(las.files[0], {}, makeCloud(clouds.first), 0),
                      writeLas(las.files[1], {4, 7, 3}, makeCloud(clouds.second), 1)};
        expectRightTree(folder, las, {1, false, 80, 10});
        expectRightTree(folder, ptsInput(folder, {clouds.first, clouds.second}), {1, true, 80, 10});
    }
}

class ModelledRun : public testing::TestWithParam<int> {};

// Random scans of every shape under settings from the everyday to the absurd.
TEST_P(ModelledRun, IsTheModelByteForByte) {
    const unsigned long long capacities[] = {0, 1, 2, 3, 10, 100, 1000};
    const unsigned long long depths[] = {0, 1, 2, 3, 6, 12, 40};
    std::mt19937 engine(static_cast<unsigned>(GetParam()));
    const auto pick = [&](unsigned long long count) { return engine() % count; };
    for (int round = 0; round < 12; ++round) {
        const PrepareFolder folder;
        ReferenceSettings settings;
        settings.hostValue = pick(1000000);
        settings.isKdTree = pick(2) == 1;
        settings.maxPointsPerNode = capacities[pick(std::size(capacities))];
        // Small nodes in a deep tree would make files of many levels of nothing.
        settings.maxLevel = depths[pick(settings.maxPointsPerNode < 10 ? 4 : std::size(depths))];
        std::vector<Cloud> clouds;
        for (unsigned long long scan = 0; scan <= pick(3); ++scan)
            clouds.push_back({static_cast<CloudShape>(pick(6)), 1 + pick(1500),
                              static_cast<unsigned>(engine()), pick(2) == 1 ? 255u : 65535u});
        std::ostringstream trace;
        trace << "round " << round << ", kd " << settings.isKdTree << ", capacity "
              << settings.maxPointsPerNode << ", level " << settings.maxLevel << ", shapes";
        for (const Cloud& cloud : clouds)
            trace << " " << static_cast<int>(cloud.shape) << "*" << cloud.points;
        SCOPED_TRACE(trace.str());
        expectRightTree(folder, ptsInput(folder, clouds), settings);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ModelledRun, testing::Range(1, 9));

TEST(WholeRun, IsTheModelOverSeveralBatches) {
    const PrepareFolder folder;
    Input input;
    input.isLas = true;
    input.files = {folder.scan("a.las"), folder.scan("b.las")};
    input.points = {
        writeLas(input.files[0], {}, makeCloud({CloudShape::Clusters, 2 * readerBatch, 5}), 0),
        writeLas(input.files[1], {}, makeCloud({CloudShape::Uniform, readerBatch + 1, 6}), 1)};
    expectRightTree(folder, input, {0, false, 5000, 12});
    expectRightTree(folder, input, {0, true, 900, 30});
}

TEST(WholeRun, LeavesOutPointsThatAreNotFiniteAndSaysSo) {
    const PrepareFolder folder;
    auto cloud = makeCloud({CloudShape::Uniform, 300, 1, 65535});
    const double bad[] = {std::numeric_limits<double>::quiet_NaN(),
                          std::numeric_limits<double>::infinity(),
                          -std::numeric_limits<double>::infinity()};
    for (std::size_t i = 0; i < 30; ++i) {
        PointRecord& point = cloud[i * i % cloud.size()];
        (i % 2 == 0 ? point.x : point.z) = bad[i % 3];
        point.red = 65535, point.intensity = 1e9;
    }
    const auto nonFinite =
        std::count_if(cloud.begin(), cloud.end(), [](const auto& p) { return !p.isFinite(); });
    ASSERT_FALSE(cloud.front().isFinite());
    Input input;
    input.files = {folder.scan("a.pts")};
    input.points = {writePts(input.files[0], 7, {cloud})};
    expectRightTree(folder, input, {0, false, 40, 6});
    const auto result = prepare(input.files, folder.work(), folder.output());
    EXPECT_THAT(result.message.utf8_string(), testing::HasSubstr(std::to_string(nonFinite)));
}

// At 1e13 neighbouring doubles lie two thousandths apart: the margins vanish and boxes cannot be
// halved for ever. Nodes that cannot be cut grow; points on the far faces that no child takes are
// counted aloud.
TEST(WholeRun, StopsSplittingWhereCoordinatesRunOutOfPrecision) {
    for (const bool isKdTree : {false, true}) {
        const PrepareFolder folder;
        auto cloud = makeCloud({CloudShape::Uniform, 400, 3});
        for (PointRecord& point : cloud) {
            point.x = 1e13 + 0.01 * std::floor(point.x / 20);
            point.y = -1e13 + 0.01 * std::floor(point.y / 20);
            point.z = 1e13 + 0.01 * std::floor(point.z / 10);
        }
        Input input;
        input.files = {folder.scan("a.pts")};
        input.points = {writePts(input.files[0], 7, {cloud})};
        const ReferenceSettings settings{0, isKdTree, 10, 50};
        unsigned long long lost = 0;
        referenceTreeFile(input.points, input.statistics(), settings, &lost);
        ASSERT_GT(lost, 0u);
        expectRightTree(folder, input, settings);
        const auto result = prepare(input.files, folder.work(), folder.output(), settings);
        EXPECT_THAT(result.message.utf8_string(), testing::HasSubstr(std::to_string(lost)));
    }
}

// More equal points than a leaf holds are cut apart in vain until the boxes cannot be halved.
TEST(WholeRun, KeepsPilesOfEqualPoints) {
    for (const bool isKdTree : {false, true}) {
        const PrepareFolder folder;
        auto cloud = makeCloud({CloudShape::Uniform, 200, 4});
        cloud.insert(cloud.begin() + 100, 30, cloud[7]);
        cloud.insert(cloud.end(), 12, cloud[50]);
        Input input;
        input.files = {folder.scan("a.pts")};
        input.points = {writePts(input.files[0], 6, {cloud})};
        expectRightTree(folder, input, {0, isKdTree, 10, isKdTree ? 70u : 25u});
        if (!isKdTree) expectRightTree(folder, input, {0, isKdTree, 10, 1000});
    }
}

TEST(WholeRun, TakesASinglePointAndPointsWithoutNumbers) {
    const PrepareFolder folder;
    Input input;
    input.files = {folder.scan("a.pts")};
    input.points = {writePts(input.files[0], 7, {makeCloud({CloudShape::Uniform, 1, 1})})};
    expectRightTree(folder, input, {});
    // Where the second line does not tell the columns the reader delivers its buffer as it is,
    // fresh here; a text without a count is one point.
    PointRecord fresh;
    fresh.sourceIndex = -1;
    const struct {
        const char* text;
        std::vector<PointRecord> points;
    } cases[] = {{"", {fresh}},
                 {"no numbers\nat all\n", {fresh}},
                 {"no numbers\nbut three columns\n", {PointRecord{}}},
                 {"4\na 2 3 4 5\nb 7 8 9 10\n", {4, fresh}}};
    for (const auto& odd : cases) {
        SCOPED_TRACE(odd.text);
        writeBytes(input.files[0], odd.text);
        input.points = {odd.points};
        expectRightTree(folder, input, {});
    }
}

TEST(WholeRun, GoesOnWithoutTextScansThatCannotBeOpened) {
    const PrepareFolder folder;
    Input input = ptsInput(folder, {{CloudShape::Uniform, 200, 1}});
    input.files.push_back(folder.scan("missing.pts"));
    input.points.emplace_back();
    expectRightTree(folder, input, {0, false, 50, 5});
}

TEST(WholeRun, DeliversTheRecordsThatATruncatedLasFileHolds) {
    const PrepareFolder folder;
    Input input;
    input.isLas = true;
    input.files = {folder.scan("a.las")};
    input.points = {writeLas(input.files[0], {}, makeCloud({CloudShape::Uniform, 1000, 1}))};
    // Ten records and a half.
    std::filesystem::resize_file(input.files[0], 227 + lasGap + 10 * 34 + 17);
    input.points[0].resize(10);
    expectRightTree(folder, input, {0, false, 4, 5});
    const auto result = prepare(input.files, folder.work(), folder.output());
    EXPECT_THAT(result.message.utf8_string(), testing::HasSubstr("990"));
}

TEST(WholeRun, TakesPathsOfAnyScriptInAnyLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const std::string& locale : {before, std::string("C")}) {
        SCOPED_TRACE(locale);
        std::setlocale(LC_ALL, locale.c_str());
        const PrepareFolder folder("Größe 点群 \xF0\x9F\x93\x90");
        expectRightTree(folder, ptsInput(folder, {{CloudShape::Uniform, 300, 1}}),
                        {0, false, 50, 5});
    }
    std::setlocale(LC_ALL, before.c_str());
}

}  // namespace vpc::test
