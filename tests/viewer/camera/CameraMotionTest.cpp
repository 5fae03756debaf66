#include "viewer/camera/CameraMotion.h"

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>
#include <glm/geometric.hpp>

#include "viewer/camera/CameraGuard.h"
#include "viewer/camera/Ray.h"
#include "viewer/camera/StandardView.h"

namespace vpc::viewer {
namespace {

constexpr draw::ImageSize picture{1280, 800};
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double thousandth = 1e-3;

/// A building at national coordinates.
const Box building{{3'450'000.0, 5'000'000.0, 410.0}, {3'450'040.0, 5'000'025.0, 422.0}};

ViewCamera view(bool perspective, StandardView direction = StandardView::Isometric) {
    return standardView(direction, building, picture, perspective);
}

double pixelsApart(const ViewCamera& a, const ViewCamera& b, const glm::dvec3& place) {
    return glm::distance(placeOf(a, picture, place).value(), placeOf(b, picture, place).value());
}

TEST(CameraMotionTest, TurningKeepsThePivotsPlaceAndTheHorizonLevel) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> angle(-2.0, 2.0);
    const glm::dvec3 pivot = building.min + glm::dvec3(3.0, 4.0, 5.0);
    for (const bool perspective : {true, false}) {
        const ViewCamera start = view(perspective);
        ViewCamera camera = start;
        for (int i = 0; i < 1000; ++i) {
            camera = orbit(camera, pivot, angle(random), angle(random));
            ASSERT_TRUE(isSound(camera));
            ASSERT_LT(pixelsApart(camera, start, pivot), thousandth);
            ASSERT_NEAR(camera.Right().z, 0.0, 1e-9);
            ASSERT_GE(camera.up.z, 0.0);
            const ViewCamera free =
                orbit(camera, pivot, angle(random), angle(random), Horizon::Free);
            ASSERT_LT(pixelsApart(free, start, pivot), thousandth);
            ASSERT_NEAR(levelled(free).Right().z, 0.0, 1e-9);
        }
        EXPECT_NEAR(camera.Distance(), start.Distance(), 1e-6);
    }
}

TEST(CameraMotionTest, ATurnEndsShortOfThePolesAndLeavesThemWithoutAJump) {
    const glm::dvec3 pivot = building.Centre();
    const ViewCamera steep = orbit(view(true), pivot, 0.0, 100.0);
    EXPECT_LT(steep.Ahead().z, -0.9999);
    EXPECT_GT(steep.up.z, 1e-3);
    const ViewCamera top = view(true, StandardView::Top);
    EXPECT_LT(pixelsApart(orbit(top, pivot, 0.0, 0.001), top, building.max), thousandth);
    EXPECT_LT(pixelsApart(orbit(top, pivot, 0.0, -0.001), top, building.max), 2.0);
    // Seen from above, the eye goes anticlockwise: from the south to the east.
    const ViewCamera front = view(true, StandardView::Front);
    EXPECT_GT(orbit(front, pivot, 1.0, 0.0).eye.x, front.eye.x + 1.0);
    EXPECT_GT(orbit(front, pivot, 0.0, 0.5).eye.z, front.eye.z + 1.0);
    EXPECT_LT(pixelsApart(levelled(orbit(front, front.eye, 0.0, -3.0, Horizon::Free)),
                          orbit(front, front.eye, 3.141592653589793, 3.0 - 3.141592653589793),
                          front.eye + glm::dvec3(0.0, -30.0, 3.0)),
              thousandth);
}

TEST(CameraMotionTest, WhatWasGrabbedStaysUnderTheCursor) {
    for (const bool perspective : {true, false})
        for (const glm::dvec3& corner : building.Corners()) {
            const ViewCamera start = view(perspective);
            const glm::dvec2 from = placeOf(start, picture, corner).value();
            const glm::dvec2 to(17.5, 790.0);
            const ViewCamera slid = pan(start, picture, corner, from, to);
            EXPECT_LT(glm::distance(placeOf(slid, picture, corner).value(), to), thousandth);
            for (const double steps : {1.0, -3.5, 20.0, 40.0}) {
                const ViewCamera zoomed = zoom(start, corner, steps, 1e-3);
                EXPECT_LT(pixelsApart(zoomed, start, corner), thousandth) << steps;
            }
        }
}

TEST(CameraMotionTest, AZoomAddsUpGoesBackAndPassesThroughWhatItGoesTo) {
    const glm::dvec3 place = building.max;
    for (const bool perspective : {true, false}) {
        const ViewCamera start = view(perspective);
        ViewCamera camera = start;
        for (int i = 0; i < 30; ++i) camera = zoom(camera, place, 1.0, 0.01);
        EXPECT_NEAR(glm::distance(camera.eye, zoom(start, place, 30.0, 0.01).eye), 0.0, 1e-7);
        camera = zoom(camera, place, -30.0, 0.01);
        EXPECT_NEAR(glm::distance(camera.eye, start.eye), 0.0, 1e-6);
        EXPECT_LT(pixelsApart(camera, start, building.min), thousandth);
    }
    const ViewCamera start = view(true);
    const ViewCamera beyond = zoom(start, place, 100.0, 0.01);
    EXPECT_LT(depthOf(beyond, place), -0.1);
    EXPECT_GT(depthOf(beyond, place), -1.0);
    EXPECT_EQ(glm::length(beyond.Ahead() - start.Ahead()) < 1e-6, true);
    EXPECT_NEAR(zoom(view(false), place, 2.0, 5.0).fieldHeight,
                view(false).fieldHeight * zoomShare * zoomShare, 1e-9);
}

TEST(CameraMotionTest, ChangingThePerspectiveOrTheTargetKeepsThePicture) {
    const ViewCamera start = view(true);
    const ViewCamera parallel = withPerspective(start, false);
    const glm::dvec3 beside = start.target + start.Right() * 9.0 + start.up * 5.0;
    EXPECT_LT(pixelsApart(parallel, start, beside), thousandth);
    const ViewCamera near = zoom(parallel, start.target, 7.0, 0.0);
    EXPECT_LT(pixelsApart(withPerspective(near, true), near, beside), thousandth);
    for (const ViewCamera& camera : {start, parallel})
        EXPECT_LT(pixelsApart(retarget(camera, 3.0), camera, building.max), thousandth);
    const ViewCamera deep = retarget(parallel, 0.5);
    EXPECT_NEAR(deep.Distance(), 0.5, 1e-8);
    // The eye of a parallel view stays clear of what is shown.
    const ViewCamera inside = pan(deep, picture, deep.target, {0.0, 0.0}, {1.0, 1.0});
    ViewCamera moved = inside;
    moved.eye = building.Centre();
    moved.target = moved.eye + inside.Ahead();
    for (const glm::dvec3& corner : building.Corners()) {
        EXPECT_GT(depthOf(clearOf(moved, building), corner), 0.0);
        EXPECT_LT(pixelsApart(clearOf(moved, building), moved, corner), thousandth);
    }
}

TEST(CameraMotionTest, AWalkKeepsTheEyesHeightWhereverOneLooks) {
    const ViewCamera start = view(true, StandardView::Front);
    const ViewCamera down = walk(start, {0.0, 0.0, 0.0, 0.0, -1.2});
    EXPECT_EQ(down.eye, start.eye);
    const ViewCamera on = walk(down, {2.0, 1.0, 0.0, 0.0, 0.0});
    EXPECT_NEAR(glm::distance(on.eye, start.eye + glm::dvec3(1.0, 2.0, 0.0)), 0.0, 1e-7);
    EXPECT_NEAR(walk(on, {0.0, 0.0, 1.5, 0.0, 0.0}).eye.z, start.eye.z + 1.5, 1e-9);
    EXPECT_LT(walk(start, {0.0, 0.0, 0.0, 0.5, 0.0}).Ahead().x, -0.4);  // to the left
    const ViewCamera top = view(true, StandardView::Top);
    EXPECT_NEAR(walk(top, {3.0, 0.0, 0.0, 0.0, 0.0}).eye.y, top.eye.y + 3.0, 1e-9);
}

TEST(CameraMotionTest, NumbersThatAreNoneNeverEnterTheView) {
    const double huge = std::numeric_limits<double>::max();
    const glm::dvec3 p = building.max;
    for (const bool perspective : {true, false}) {
        const ViewCamera c = view(perspective);
        for (const double bad : {nan, std::numeric_limits<double>::infinity(), -huge, huge, 1e30}) {
            const glm::dvec3 place(p.x, bad, p.z);
            for (const ViewCamera& camera :
                 {orbit(c, place, 1.0, 1.0), orbit(c, p, bad, 0.0), orbit(c, p, 0.0, bad),
                  orbit(c, p, bad, bad, Horizon::Free), zoom(c, place, 1.0, 1.0),
                  zoom(c, p, bad, 1.0), zoom(c, p, -bad, 0.0), zoom(c, p, 1.0, bad),
                  zoom(c, c.eye, 1.0, 1.0), pan(c, picture, place, {0.0, 0.0}, {1.0, 1.0}),
                  pan(c, picture, p, {bad, 0.0}, {1.0, 1.0}), retarget(c, bad), retarget(c, 1e-300),
                  walk(c, {bad, bad, bad, 0.0, 0.0}), walk(c, {0.0, 0.0, 0.0, bad, bad}),
                  fit(c, {place, place}, picture), fit(c, {}, picture)})
                ASSERT_TRUE(isSound(camera)) << bad << perspective;
        }
    }
}

TEST(StandardViewTest, FitsBoxesOfEverySizeFromEverySide) {
    for (const double extent : {1e-3, 1.0, 1e4, 1e7})
        for (const glm::dvec3 shape : {glm::dvec3(1.0, 0.5, 0.2), glm::dvec3(0.0, 0.0, 1.0)})
            for (const StandardView direction : standardViews)
                for (const bool perspective : {true, false}) {
                    const glm::dvec3 corner(500'000.0, 5'000'000.0, 100.0);
                    const Box box{corner, corner + shape * extent};
                    const ViewCamera camera = standardView(direction, box, picture, perspective);
                    ASSERT_TRUE(isSound(camera)) << extent << nameOf(direction);
                    double fullest = 0.0;
                    for (const glm::dvec3& place : box.Corners()) {
                        const auto seen = placeOf(camera, picture, place);
                        ASSERT_TRUE(seen);
                        const glm::dvec2 share = glm::abs(*seen / glm::dvec2(640.0, 400.0) - 1.0);
                        fullest = std::max({fullest, share.x, share.y});
                        ASSERT_GT(depthOf(camera, place), 0.0);
                    }
                    EXPECT_LE(fullest, 0.951) << extent << nameOf(direction);
                    // A pole is a point from above, and a flat box has no height to fill.
                    if (shape.x > 0.0) {
                        EXPECT_GE(fullest, 0.94) << extent << nameOf(direction);
                    }
                }
    const ViewCamera spot =
        standardView(StandardView::Front, {building.min, building.min}, picture, true);
    EXPECT_EQ(spot.target, building.min);
    EXPECT_EQ(standardView(StandardView::Top, {}, picture, true).target, glm::dvec3(0.0));
    const ViewCamera right = standardView(StandardView::Right, building, picture, false);
    EXPECT_GT(right.eye.x, building.max.x);
    EXPECT_EQ(right.Right(), glm::dvec3(0.0, 1.0, 0.0));
    EXPECT_STREQ(nameOf(StandardView::Isometric), "Isometric");
}

}  // namespace
}  // namespace vpc::viewer
