#include "viewer/document/Placement.h"

#include <gtest/gtest.h>
#include <glm/geometric.hpp>

namespace vpc::viewer {
namespace {

TEST(PlacementTest, ScalesThenTurnsThenMovesAndGoesBack) {
    const Placement placement{{100.0, 200.0, 5.0}, 1.5707963267948966, 2.0};
    const glm::dvec3 moved = placement.ToDrawing({1.0, 0.0, 3.0});
    EXPECT_NEAR(glm::distance(moved, glm::dvec3(100.0, 202.0, 11.0)), 0.0, 1e-9);
    EXPECT_NEAR(glm::distance(placement.ToPoints(moved), glm::dvec3(1.0, 0.0, 3.0)), 0.0, 1e-9);
}

}  // namespace
}  // namespace vpc::viewer
