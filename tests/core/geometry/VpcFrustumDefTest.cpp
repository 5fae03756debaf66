#include "core/geometry/VpcFrustumDef.h"

#include <cmath>

#include <gtest/gtest.h>

namespace {

using Box = VpcBoundingBoxAxisAligned;

const VpcPoint3D camera(0, 0, 10);
const VpcPoint3D target(0, 0, 0);
const VpcVector3D up(0, 2, 0);

/// Looks down from (0, 0, 10) onto a field of 8 by 4 around the origin, and down to z = -20.
VpcFrustumDef lookingDown(bool perspective, const VpcTransform3D& transform = {}) {
    VpcFrustumDef frustum;
    EXPECT_TRUE(frustum.UpdateViewGeometry(camera, target, up, 10, 8, 4, perspective, transform));
    return frustum;
}

struct PointCase {
    VpcPoint3D p;
    bool perspective;
    bool parallel;
};

/// In perspective half the width is 0.4 for every unit below the camera, half the height 0.2.
const PointCase pointCases[] = {
    {{0, 0, 5}, true, true},         // between camera and target
    {{0, 0, -19.9}, true, true},     // behind the target
    {{0, 0, -20.1}, false, false},   // past the far end
    {{0, 0, 10.1}, false, false},    // behind the camera
    {{0, 0, 40}, false, false},      //
    {{3.9, 1.9, 0}, true, true},     // corners of the field at the target
    {{-3.9, -1.9, 0}, true, true},   //
    {{4.1, 0, 0}, false, false},     // beside it
    {{-4.1, 0, 0}, false, false},    //
    {{0, 2.1, 0}, false, false},     //
    {{0, -2.1, 0}, false, false},    //
    {{3, 0, 9}, false, true},        // beside the pyramid, inside the box
    {{0, 1.5, 9}, false, true},      //
    {{11.9, 0, -20}, true, false},   // inside the wide end of the pyramid
    {{0, -5.9, -20}, true, false},   //
    {{12.1, 0, -20}, false, false},  //
};

TEST(VpcFrustumDef, HoldsThePointsInFrontOfTheCamera) {
    const VpcFrustumDef perspective = lookingDown(true);
    const VpcFrustumDef parallel = lookingDown(false);
    for (const PointCase& c : pointCases) {
        EXPECT_EQ(perspective.IsInside(c.p), c.perspective) << c.p;
        EXPECT_EQ(parallel.IsInside(c.p), c.parallel) << c.p;
    }
    EXPECT_TRUE(parallel.IsInside(4, 2, 10)) << "a corner lies on three planes";
    EXPECT_TRUE(parallel.IsInside(-4, -2, -20));
    EXPECT_FALSE(parallel.IsInside(std::nextafter(4, 5), 0, 0));
    EXPECT_TRUE(perspective.IsInside(camera));
}

TEST(VpcFrustumDef, MeetsBoxesUnlessOnePlaneCutsThemOff) {
    const struct {
        Box box;
        bool perspective;
        bool parallel;
    } cases[] = {
        {{-1, -1, 4, 1, 1, 6}, true, true},         // inside
        {{-99, -99, -99, 99, 99, 99}, true, true},  // all around
        {{3.5, -1, -1, 9, 1, 1}, true, true},       // across a side
        {{5, -1, 4, 9, 1, 6}, false, false},        // beside
        {{-9, -1, 4, -5, 1, 6}, false, false},      //
        {{-1, 5, 4, 1, 9, 6}, false, false},        //
        {{-1, -9, 4, 1, -5, 6}, false, false},      //
        {{-1, -1, 14, 1, 1, 15}, false, false},     // behind the camera
        {{-1, -1, 11, 1, 1, 12}, true, false},      // close behind it: no near plane in perspective
        {{-1, -1, -30, 1, 1, -21}, false, false},   // past the far end
        {{3, -1, 8.5, 3.5, 1, 9}, false, true},     // beside the pyramid, inside the box
        {{9, -1, -19, 10, 1, -18}, true, false},    // inside the pyramid, beside the box
        {{4, 2, 10, 9, 9, 19}, false, true},        // touches the box's corner
    };
    const VpcFrustumDef perspective = lookingDown(true);
    const VpcFrustumDef parallel = lookingDown(false);
    for (const auto& c : cases) {
        EXPECT_EQ(perspective.Intersects(c.box), c.perspective) << c.box.minPoint;
        EXPECT_EQ(parallel.Intersects(c.box), c.parallel) << c.box.minPoint;
    }
    // Off an edge of the volume, outside it, but not wholly outside any one plane.
    EXPECT_TRUE(perspective.Intersects(Box(10, 5, -40, 30, 30, -15)));
}

void expectVertices(const VpcFrustumDef& frustum, const double (&expected)[8][3]) {
    const std::vector<VpcPoint3D> vertices = frustum.GetRefVertices();
    ASSERT_EQ(vertices.size(), 8U);
    for (std::size_t i = 0; i < 8; ++i) {
        EXPECT_NEAR(vertices[i].x, expected[i][0], 1e-12) << i;
        EXPECT_NEAR(vertices[i].y, expected[i][1], 1e-12) << i;
        EXPECT_NEAR(vertices[i].z, expected[i][2], 1e-12) << i;
    }
}

TEST(VpcFrustumDef, VerticesAndCentres) {
    VpcFrustumDef frustum = lookingDown(true);
    expectVertices(frustum, {{-12, 6, -20},
                             {12, 6, -20},
                             {-12, -6, -20},
                             {12, -6, -20},
                             {0, 0, 10},
                             {0, 0, 10},
                             {0, 0, 10},
                             {0, 0, 10}});
    EXPECT_TRUE(frustum.GetFarCenter() == VpcPoint3D(0, 0, -20));
    EXPECT_TRUE(frustum.GetNearCenter() == camera);
    EXPECT_EQ(frustum.GetFarDistance(), 30);
    EXPECT_EQ(frustum.GetCameraDistance(), 10);
    EXPECT_EQ(frustum.GetNearWidth(), 0);
    for (std::size_t i = 0; i < 6; ++i) {
        const VpcPlaneDef& plane = frustum.GetPlanes()[i];
        const bool undefined = i == VpcFrustumDef::PlaneNear;
        EXPECT_EQ(std::isnan(plane.normal.x), undefined) << i;
        EXPECT_NEAR(undefined ? 1 : plane.normal.Magnitude(), 1, 1e-15) << i;
    }
    EXPECT_TRUE(frustum.UpdateOrthographic(2, 6));
    expectVertices(frustum, {{-1, 3, -20},
                             {1, 3, -20},
                             {-1, -3, -20},
                             {1, -3, -20},
                             {-1, 3, 10},
                             {1, 3, 10},
                             {-1, -3, 10},
                             {1, -3, 10}});
    EXPECT_TRUE(frustum.UpdatePerspective(1, 1));
    EXPECT_EQ(frustum.GetFarHeight(), 3);
    EXPECT_TRUE(frustum.IsWithinRadiusFromCenterAxis(VpcPoint3D(0, 3, 99)));
    EXPECT_FALSE(frustum.IsWithinRadiusFromCenterAxis(VpcPoint3D(3, 3, 0)));
}

TEST(VpcFrustumDef, TransformMovesTheVolumeOnce) {
    VpcTransform3D transform;
    // x to y, y to z, z to x, and off by 100.
    transform.CreateFromBaseVectors({0, 1, 0}, {0, 0, 1}, {1, 0, 0}, {100, 100, 100});
    for (const bool perspective : {true, false}) {
        VpcFrustumDef frustum = lookingDown(perspective, transform);
        // Computing anew must not move anything further.
        frustum.RecomputeVerticesPlanes();
        EXPECT_TRUE(frustum.GetCamera() == VpcPoint3D(110, 100, 100));
        EXPECT_TRUE(frustum.GetTarget() == VpcPoint3D(100, 100, 100));
        for (const PointCase& c : pointCases)
            EXPECT_EQ(frustum.IsInside(c.p.z + 100, c.p.x + 100, c.p.y + 100),
                      perspective ? c.perspective : c.parallel)
                << c.p;
    }
}

TEST(VpcFrustumDef, PickVolumeLeadsThroughThePickPoint) {
    // A pick box of 0.4 by 0.2 where the view looks at (2, 1, 0), picked half way up from there.
    const struct {
        bool perspective;
        VpcPoint3D pick;
        VpcPoint3D inside[2];
        VpcPoint3D outside[4];
    } cases[] = {
        {true,
         {1, 0.5, 5},
         {{2.19, 1.09, 0}, {3.8, 1.9, -10}},
         {{2.21, 1, 0}, {2, 1.11, 0}, {1, 0.5, 12}, {0.8, 0.5, 5}}},
        {false,
         {2, 1, 5},
         {{2.19, 1.09, 0}, {1.81, 0.91, -19}},
         {{2.21, 1, 0}, {2, 1.11, 0}, {2, 1, 10.1}, {1.79, 1, -19}}},
    };
    for (const auto& c : cases) {
        VpcFrustumDef frustum;
        frustum.UpdatePickGeometry(camera, target, c.pick, up, 10, 0.4, 0.2, c.perspective, {});
        EXPECT_TRUE(frustum.IsInside(c.pick));
        for (const VpcPoint3D& p : c.inside) EXPECT_TRUE(frustum.IsInside(p)) << p;
        for (const VpcPoint3D& p : c.outside) EXPECT_FALSE(frustum.IsInside(p)) << p;
        EXPECT_NEAR(frustum.GetCentreAxis().DistanceTo(c.pick), 0, 1e-15);
    }
}

TEST(VpcFrustumDef, DegenerateCamerasExcludeNothing) {
    VpcFrustumDef frustum;
    for (const bool perspective : {true, false}) {
        frustum.UpdateViewGeometry(target, target, up, 10, 8, 4, perspective, {});
        EXPECT_TRUE(frustum.IsInside(1, 2, 3));
        EXPECT_TRUE(frustum.Intersects(Box(5, 5, 5, 6, 6, 6)));
    }
    // A pick in the camera itself falls back on the view direction.
    frustum.UpdatePickGeometry(camera, target, camera, up, 10, 1, 1, true, {});
    EXPECT_TRUE(frustum.IsInside(0, 0, 0));
    EXPECT_FALSE(frustum.IsInside(1, 0, 0));
}

TEST(VpcPlaneDef, NormalPointsToTheCounterClockwiseSide) {
    const VpcPlaneDef plane(VpcPoint3D(0, 0, 3), VpcPoint3D(2, 0, 3), VpcPoint3D(0, 5, 3));
    EXPECT_EQ(plane.coefficients, (std::array<double, 4>{0, 0, 1, -3}));
    EXPECT_TRUE(plane.IsBehind(9, 9, 2.9));
    EXPECT_FALSE(plane.IsBehind(9, 9, 3));
}

}  // namespace
