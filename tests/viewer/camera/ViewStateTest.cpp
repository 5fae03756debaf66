#include <cmath>
#include <limits>

#include <gtest/gtest.h>
#include <glm/geometric.hpp>

#include "viewer/camera/CameraHistory.h"
#include "viewer/camera/CameraMotion.h"
#include "viewer/camera/FrameBudget.h"
#include "viewer/camera/Pivot.h"
#include "viewer/camera/Ray.h"
#include "viewer/camera/StandardView.h"

namespace vpc::viewer {
namespace {

constexpr draw::ImageSize picture{1000, 800};

TEST(CameraHistoryTest, GoesBackAndForwardWithinItsBound) {
    CameraHistory history(3);
    EXPECT_FALSE(history.Back());
    const ViewCamera first;
    const auto at = [&first](double depth) { return retarget(first, depth); };
    for (const double depth : {1.0, 2.0, 2.0, 3.0, 4.0}) history.Keep(at(depth));
    EXPECT_EQ(history.Back(), at(3.0));
    EXPECT_EQ(history.Back(), at(2.0));  // kept once
    EXPECT_FALSE(history.Back());        // the first one is forgotten
    EXPECT_EQ(history.Forward(), at(3.0));
    history.Keep(at(3.0));
    EXPECT_TRUE(history.CanGoForward());
    ViewCamera broken = first;
    broken.eye.x = std::nan("");
    history.Keep(broken);
    history.Keep(at(9.0));
    EXPECT_FALSE(history.Forward());
    EXPECT_EQ(history.Back(), at(3.0));
}

TEST(FrameBudgetTest, LearnsTheFixedPartAndTheRateAndStaysCalm) {
    FrameBudget budget;
    const auto time = [](std::size_t points) { return 3.0 + static_cast<double>(points) / 5000.0; };
    for (int i = 0; i < 40; ++i)
        for (const std::size_t points : {20'000U, 250'000U, 100'000U})
            budget.Measured(points, time(points));
    EXPECT_NEAR(budget.MillisecondsFor(1'000'000), 203.0, 5.0);
    EXPECT_NEAR(static_cast<double>(budget.PointsIn(16.0)), 65'000.0, 3000.0);
    EXPECT_EQ(budget.Step(0, 16.0), 1U);
    EXPECT_NEAR(static_cast<double>(budget.Step(5'000'000, 16.0)), 77.0, 4.0);

    budget.Measured(100'000, 5000.0);  // the machine was busy
    EXPECT_GT(budget.PointsIn(16.0), 60'000U);
    for (const double absurd : {0.0, -4.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        budget.Measured(100'000, absurd);
        EXPECT_GE(budget.Step(5'000'000, absurd), 1U);
    }
    budget.Measured(0, 40.0);
    EXPECT_NEAR(budget.MillisecondsFor(1'000'000), 203.0, 5.0);
    EXPECT_GE(budget.PointsIn(0.1), 1000U);
    // Another speed is learnt soon, also from slices that are all of a size.
    for (int i = 0; i < 4; ++i) budget.Measured(250'000, 5.0);
    EXPECT_NEAR(budget.MillisecondsFor(250'000), 5.0, 0.5);
}

TEST(PivotTest, IsUnderTheCursorElseAsFarAsTheLastOneElseInTheBox) {
    const Box box{{5e6, 5e6, 0.0}, {5e6 + 10.0, 5e6 + 10.0, 10.0}};
    const ViewCamera camera = standardView(StandardView::Front, box, picture, true);
    const glm::ivec2 cursor(400, 300);
    const auto seenAt = [&](const glm::dvec3& place) {
        return placeOf(camera, picture, place).value();
    };
    Pivot pivot;
    const glm::dvec3 inBox = pivot.Find(camera, picture, cursor, {}, box);
    EXPECT_NEAR(inBox.y, 5e6 + 5.0, 1e-6);
    EXPECT_LT(glm::distance(seenAt(inBox), middleOf(cursor)), 1e-3);
    const glm::dvec3 seen(5e6, 5e6 + 2.0, 3.0);
    EXPECT_EQ(pivot.Find(camera, picture, cursor, seen, box), seen);
    const glm::dvec3 asFar = pivot.Find(camera, picture, {0, 0}, {}, box);
    EXPECT_NEAR(asFar.y, seen.y, 1e-6);
    EXPECT_LT(glm::distance(seenAt(asFar), glm::dvec2(0.5)), 1e-3);
    // Neither what lies behind the eye nor an empty drawing leads astray.
    pivot.Forget();
    const ViewCamera away = orbit(camera, camera.eye, 3.0, 0.0);
    for (const Box& shown : {box, Box{}}) {
        const glm::dvec3 ahead = pivot.Find(away, picture, cursor, camera.target, shown);
        EXPECT_NEAR(depthOf(away, ahead), away.Distance(), 1e-6);
    }
    const glm::dvec3 broken(std::nan(""));
    EXPECT_TRUE(std::isfinite(pivot.Find(away, picture, cursor, broken, {broken, broken}).x));
}

}  // namespace
}  // namespace vpc::viewer
