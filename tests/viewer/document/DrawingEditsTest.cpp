#include <cmath>

#include <gtest/gtest.h>
#include <glm/geometric.hpp>

#include "viewer/camera/StandardView.h"
#include "viewer/document/ClipMaker.h"
#include "viewer/document/Labels.h"
#include "viewer/document/Refusal.h"
#include "viewer/document/SectionMaker.h"
#include "viewer/document/UndoStack.h"

namespace vpc::viewer {
namespace {

const Box box{{5e6, 5e6, 0.0}, {5e6 + 4.0, 5e6 + 3.0, 2.0}};

double area(const std::vector<glm::dvec3>& corners) {
    glm::dvec3 sum(0.0);
    for (std::size_t i = 2; i < corners.size(); ++i)
        sum += glm::cross(corners[i - 1] - corners[0], corners[i] - corners[0]) * 0.5;
    return glm::length(sum);
}

TEST(UndoStackTest, GoesThroughStatesWithTheirLabels) {
    UndoStack stack({}, 2);
    const auto withBudget = [](unsigned long long budget) {
        Drawing drawing;
        drawing.pointBudget = budget;
        return drawing;
    };
    EXPECT_FALSE(stack.Undo());
    for (const unsigned long long budget : {1U, 2U, 2U, 3U})
        stack.Do("budget " + std::to_string(budget), withBudget(budget));
    EXPECT_EQ(stack.UndoLabel(), "budget 3");
    EXPECT_TRUE(stack.Undo());
    EXPECT_EQ(stack.RedoLabel(), "budget 3");
    EXPECT_TRUE(stack.Undo());
    EXPECT_EQ(stack.Current().pointBudget, 1U);
    EXPECT_FALSE(stack.Undo());  // the bound
    EXPECT_EQ(stack.UndoLabel(), "");
    stack.Amend([](Drawing& drawing) { drawing.entities.resize(1); });
    EXPECT_TRUE(stack.Redo());
    EXPECT_EQ(stack.Current().pointBudget, 2U);
    EXPECT_EQ(stack.Current().entities.size(), 1U);
    stack.Do("other", withBudget(9));
    EXPECT_FALSE(stack.Redo());
    EXPECT_EQ(stack.RedoLabel(), "");
    EXPECT_TRUE(stack.Undo());
    EXPECT_EQ(stack.Current().pointBudget, 2U);
}

TEST(SectionMakerTest, CutsBoxesAcrossAxesAndThroughPlaces) {
    const Section across = sectionAcross(Axis::Y, box);
    EXPECT_NEAR(area(sectionOutline(across, box)), 8.0, 1e-6);
    EXPECT_TRUE(sectionOutline(moved(across, 9.0), box).empty());
    EXPECT_NEAR(area(sectionOutline(moved(across, 1.5), box)), 8.0, 1e-6);  // on a side
    EXPECT_EQ(flipped(flipped(across)), across);

    // Through the corner below and two middles of edges: a regular case of six corners, and the
    // corners are in their order, which their area shows.
    const glm::dvec3 c = box.Centre();
    const Box cube{c - 1.0, c + 1.0};
    const Section diagonal{"", c, glm::normalize(glm::dvec3(1.0)), true};
    EXPECT_EQ(sectionOutline(diagonal, cube).size(), 6U);
    EXPECT_NEAR(area(sectionOutline(diagonal, cube)), 3.0 * std::sqrt(3.0), 1e-6);
    const glm::dvec3 edge = glm::normalize(glm::dvec3(1.0, 1.0, 0.0));
    EXPECT_NEAR(area(sectionOutline({"", c, edge, true}, cube)), 4.0 * std::sqrt(2.0), 1e-6);

    const Section three = sectionThrough(c, c + glm::dvec3(1.0, 0.0, 0.0),
                                         c + glm::dvec3(0.0, 1.0, 1e-3), {0.0, 0.0, -1.0});
    EXPECT_LT(three.normal.z, -0.9);  // what lies behind the plane is kept
    EXPECT_NEAR(glm::length(three.normal), 1.0, 1e-12);
    const glm::dvec3 way(1.0, 2.0, 3.0);
    EXPECT_THROW(sectionThrough(c, c + way, c + way * 3.0, way), Refusal);
    EXPECT_THROW(sectionThrough(c, c, c + way, way), Refusal);
    EXPECT_THROW(sectionAcross(Axis::X, {}), Refusal);
    Drawing drawing = withSection(withSection({}, across), across);
    EXPECT_EQ(drawing.sections[1].name, "Section 2");
    drawing.sections.erase(drawing.sections.begin());
    EXPECT_EQ(withSection(drawing, across).sections[1].name, "Section 1");
}

TEST(ClipMakerTest, TakesRegionsOfTheViewAndRefusesWhatIsNone) {
    const draw::ImageSize size{800, 600};
    const ViewCamera camera = standardView(StandardView::Isometric, box, size, false);
    const ClipPlane plane = ClipPlane::Of(camera);
    std::vector<glm::dvec2> corners;
    for (const glm::dvec2 place : {glm::dvec2(100.0, 100.0), glm::dvec2(700.0, 90.0),
                                   glm::dvec2(700.0, 90.0), glm::dvec2(400.0, 500.0)})
        corners.push_back(plane.Meet(rayThrough(camera, size, place)).value());
    corners.push_back(corners.front());
    const Clip clip = makeClip(plane, corners, false);
    ASSERT_EQ(clip.corners.size(), 3U);  // repeated ones are left out
    EXPECT_FALSE(clip.keepsInside);
    const glm::dvec2 seen = placeOf(camera, size, plane.Place(clip.corners[2])).value();
    EXPECT_LT(glm::distance(seen, glm::dvec2(400.0, 500.0)), 1e-3);
    EXPECT_NEAR(glm::length(glm::cross(glm::cross(clip.xAxis, clip.yAxis), camera.Ahead())), 0.0,
                1e-9);

    const auto refuses = [&](const std::vector<glm::dvec2>& some) {
        for (const double scale : {1e-3, 1.0, 1e6}) {
            std::vector<glm::dvec2> scaled;
            for (const glm::dvec2& corner : some) scaled.push_back(corner * scale);
            try {
                makeClip(plane, scaled, true);
                return false;
            } catch (const Refusal&) {
            }
        }
        return true;
    };
    EXPECT_TRUE(refuses({}));
    EXPECT_TRUE(refuses({{0, 0}, {1, 0}, {0, 0}}));
    EXPECT_TRUE(refuses({{0, 0}, {1, 1}, {2, 2}, {5, 5}}));
    EXPECT_TRUE(refuses({{0, 0}, {1, 1}, {1, 0}, {0, 1}}));          // crossed
    EXPECT_TRUE(refuses({{0, 0}, {4, 0}, {4, 4}, {2, 0}, {0, 4}}));  // touches its own edge
    EXPECT_TRUE(refuses({{0, 0}, {4, 0}, {2, 0}, {2, 3}}));          // goes back along an edge
    EXPECT_FALSE(refuses({{0, 0}, {4, 0}, {4, 4}, {2, 1}, {0, 4}}));
    EXPECT_FALSE(refuses({{0, 0}, {2, 0}, {4, 0}, {4, 4}}));  // a corner on a straight edge
    EXPECT_FALSE(refuses(rectangleBetween({3, 3}, {-1, 0})));
}

TEST(LabelsTest, NumbersAreShortAndKeepTheirMillimetres) {
    EXPECT_EQ(coordinateText(5'432'100.1234, 50.0), "5432100.123");
    EXPECT_EQ(coordinateText(-0.0001, 50.0), "0");
    EXPECT_EQ(coordinateText(5'000'000.25, 1e7), "5000000.25");
    EXPECT_EQ(coordinateText(0.00012345, 0.001), "0.000123");
    EXPECT_EQ(placeText({1.0, -2.5, 100.0}, 10.0), "1, -2.5, 100");
    EXPECT_EQ(lengthText(12.3456), "12.346");
    EXPECT_EQ(lengthText(0.012345), "0.01235");
    EXPECT_EQ(lengthText(0.0), "0");
    EXPECT_EQ(lengthText(1e300), "1e+300");
    EXPECT_EQ(std::stod(exactText(1.0 / 3.0)), 1.0 / 3.0);
    EXPECT_FALSE(lengthText(std::nan("")).empty());
}

}  // namespace
}  // namespace vpc::viewer
