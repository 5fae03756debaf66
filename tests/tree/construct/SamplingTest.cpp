#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "tree/construct/SamplePattern.h"
#include "tree/construct/VpcPointGrid3D.h"
#include "tree/construct/VpcRandomSampler.h"

namespace {

/// The points of a node with `count` points that a sampling from seed 0 keeps, drawn plainly.
std::vector<unsigned long long> keptPlainly(unsigned long long count, double fraction) {
    std::mt19937 generator(0);
    std::vector<unsigned long long> kept;
    for (unsigned long long i = 0; i < count; ++i) {
        const auto low = static_cast<double>(generator());
        const double u = (low + static_cast<double>(generator()) * 4294967296.0) /
                         18446744073709551616.0 / fraction;
        if (u < 1.0 || count < 3) kept.push_back(i);
    }
    if (kept.empty() && count != 0) kept.push_back(0);
    return kept;
}

TEST(SamplePatternTest, KeepsWhatAPlainDrawForEachNodeKeeps) {
    for (const double fraction : {0.25, 0.5}) {
        vpc::SamplePattern pattern(fraction);
        // Large first: a pattern that has grown serves smaller nodes as well.
        for (const unsigned long long count :
             {10007ULL, 0ULL, 1ULL, 2ULL, 3ULL, 4ULL, 5ULL, 63ULL, 64ULL, 65ULL, 128ULL, 1000ULL}) {
            const auto expected = keptPlainly(count, fraction);
            EXPECT_EQ(pattern.KeptOf(count), expected.size()) << count;
            std::vector<unsigned long long> kept;
            for (unsigned long long begin = 0; begin < count; begin += 700)  // in pieces
                pattern.ForEachKept(count, begin, std::min(begin + 700, count),
                                    [&kept](unsigned long long i) { kept.push_back(i); });
            EXPECT_EQ(kept, expected) << count;
        }
    }
}

TEST(RandomSamplerTest, TheDeviceSeedsDifferently) {
    VpcRandomSampler first(0.5, true, 0);
    VpcRandomSampler second(0.5, true, 0);
    int differences = 0;
    for (int i = 0; i < 1000; ++i) differences += first.KeepNext() != second.KeepNext() ? 1 : 0;
    EXPECT_GT(differences, 300);
}

TEST(PointGridTest, KeepsThePointNearestToEachCellsCentre) {
    const VpcBoundingBoxAxisAligned box(0, 0, 0, 4, 2, 1);
    VpcPointGrid3D grid(1.0, box, 1.0);
    EXPECT_EQ(grid.Count(0), 4U);
    EXPECT_EQ(grid.Count(1), 2U);
    EXPECT_EQ(grid.Count(2), 1U);
    std::vector<VpcPoint3D> points(6);
    points[0].SetCoordinates(0.9, 0.5, 0.5);  // displaced by the next
    points[1].SetCoordinates(0.4, 0.5, 0.5);  // as near as the one after it, and earlier
    points[2].SetCoordinates(0.6, 0.5, 0.5);
    points[3].SetCoordinates(4.0, 2.0, 1.0);   // on the far corner: the last cell
    points[4].SetCoordinates(-3.0, 1.5, 0.5);  // outside: the nearest cell below
    points[5].SetCoordinates(3.5, 0.2, 9.0);
    grid.FilterPoints(points);
    std::vector<double> kept;
    for (const VpcPoint3D& point : grid.GetFilteredPoints(points)) kept.push_back(point.x);
    EXPECT_EQ(kept, (std::vector<double>{0.4, 3.5, -3.0, 4.0}));
    // Cells wider than the box, or as wide: one along the axis.
    EXPECT_EQ(VpcPointGrid3D(1.0, box, 3.0).Count(0), 1U);
    EXPECT_EQ(VpcPointGrid3D(1.0, box, 2.7).Count(0), 1U);
    EXPECT_EQ(VpcPointGrid3D(1.0, box, 2.6).Count(0), 2U);
}

TEST(PointGridTest, RefusesAGridBeyondMemoryAloud) {
    testing::internal::CaptureStderr();
    EXPECT_THROW(VpcPointGrid3D(1.0, {0, 0, 0, 1, 1, 1}, 1ULL << 40, 1ULL << 40, 3),
                 std::bad_alloc);
    EXPECT_EQ(testing::internal::GetCapturedStderr().find(
                  "## EXCEPTION ERROR while creating VpcGrid3D of "
                  "1099511627776x1099511627776x3 of size 24 : bad_alloc caught : "),
              0U);
}

}  // namespace
