#include "core/geometry/VpcInterval.h"

#include <gtest/gtest.h>

#include "core/geometry/VpcNumMathTools.h"

namespace {

void expectBounds(const VpcInterval& interval, double min, double max) {
    EXPECT_EQ(interval.min, min);
    EXPECT_EQ(interval.max, max);
}

TEST(VpcInterval, EveryChangeKeepsTheBoundsInOrder) {
    expectBounds({5, 2}, 2, 5);
    const auto after = [](auto change) {
        VpcInterval interval(2, 5);
        change(interval);
        return interval;
    };
    expectBounds(after([](VpcInterval& i) { i.ReplaceMin(7); }), 5, 7);
    expectBounds(after([](VpcInterval& i) { i.ReplaceMin(5); }), 5, 5);
    expectBounds(after([](VpcInterval& i) { i.ReplaceMin(-1); }), -1, 5);
    expectBounds(after([](VpcInterval& i) { i.ReplaceMax(1); }), 1, 2);
    expectBounds(after([](VpcInterval& i) { i.ReplaceMax(9); }), 2, 9);
    expectBounds(after([](VpcInterval& i) { i.SetInterval(3, -3); }), -3, 3);
    expectBounds(after([](VpcInterval& i) { i.AddBoundary(0.5); }), 0.5, 6.5);
    expectBounds(after([](VpcInterval& i) { i.AddBoundary(-1); }), 2, 5);
}

TEST(VpcInterval, Overlaps) {
    const struct {
        VpcInterval a;
        VpcInterval b;
        bool halfOpen;
        bool closed;
    } cases[] = {
        {{0, 1}, {1, 2}, false, true}, {{0, 1}, {0.5, 2}, true, true},
        {{0, 9}, {3, 4}, true, true},  {{0, 1}, {2, 3}, false, false},
        {{1, 1}, {1, 1}, false, true}, {{0, 1}, {0, 2}, true, true},
        {{0, 2}, {1, 1}, true, true},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.a.OverlapsHalfOpen(c.b), c.halfOpen) << c.a.max << ' ' << c.b.max;
        EXPECT_EQ(c.b.OverlapsHalfOpen(c.a), c.halfOpen) << c.a.max << ' ' << c.b.max;
        EXPECT_EQ(c.a.OverlapsClosed(c.b), c.closed) << c.a.max << ' ' << c.b.max;
        EXPECT_EQ(c.b.OverlapsClosed(c.a), c.closed) << c.a.max << ' ' << c.b.max;
    }
    // Where both begin together it is the other interval whose end counts.
    EXPECT_FALSE(VpcInterval(0, 2).OverlapsHalfOpen({0, 0}));
    EXPECT_TRUE(VpcInterval(0, 0).OverlapsHalfOpen({0, 2}));
}

TEST(VpcNumMathTools, TheTwoMappingsRoundDifferently) {
    EXPECT_EQ(VpcNumMathTools::RescaleRange(3, 1, 5, 10, 20), 15);
    EXPECT_EQ(VpcNumMathTools::LinearInterpolate(3, 1, 5, 10, 20), 15);
    EXPECT_EQ(VpcNumMathTools::LinearInterpolate(9, 1, 5, 10, 20), 30) << "extrapolates";
    // 1/49 rounds, so dividing first misses the 1 that multiplying first gives.
    EXPECT_LT(VpcNumMathTools::RescaleRange(1, 0, 49, 0, 49), 1.0);
    EXPECT_EQ(VpcNumMathTools::LinearInterpolate(1, 0, 49, 0, 49), 1.0);
}

}  // namespace
