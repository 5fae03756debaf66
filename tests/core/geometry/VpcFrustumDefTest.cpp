#include "core/geometry/VpcFrustumDef.h"

#include <cmath>

#include <gtest/gtest.h>

#include "support/ReaderTools.h"

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

TEST(VpcFrustumDef, HoldsThePointsInFrontOfTheCameraWhereverItIsMoved) {
    // In perspective half the width is 0.4 for every unit below the camera, half the height 0.2.
    const std::tuple<VpcPoint3D, bool, bool> cases[] = {
        {{0, 0, -20.1}, false, false},  // past the far end
        {{0, 0, 10.1}, false, false},   // behind the camera
        {{3.9, 1.9, 0}, true, true},    // a corner of the field at the target
        {{4.1, 0, 0}, false, false},    // beside it
        {{-4.1, 0, 0}, false, false},   //
        {{0, 2.1, 0}, false, false},    //
        {{0, -2.1, 0}, false, false},   //
        {{3, 0, 9}, false, true},       // beside the pyramid, inside the box
        {{11.9, 0, -20}, true, false},  // inside the wide end of the pyramid
        {{0, -5.9, -20}, true, false},  //
    };
    VpcTransform3D cycle;  // x to y, y to z, z to x, and off by 100
    cycle.CreateFromBaseVectors({0, 1, 0}, {0, 0, 1}, {1, 0, 0}, {100, 100, 100});
    for (const bool perspective : {true, false}) {
        const VpcFrustumDef frustum = lookingDown(perspective);
        VpcFrustumDef moved = lookingDown(perspective, cycle);
        moved.RecomputeVerticesPlanes();  // moves nothing further
        EXPECT_TRUE(moved.GetCamera() == VpcPoint3D(110, 100, 100));
        for (const auto& [p, inPerspective, inParallel] : cases) {
            const bool expected = perspective ? inPerspective : inParallel;
            EXPECT_EQ(frustum.IsInside(p), expected) << p;
            EXPECT_EQ(moved.IsInside(p.z + 100, p.x + 100, p.y + 100), expected) << p;
        }
    }
    EXPECT_TRUE(lookingDown(true).IsInside(camera));
    const VpcFrustumDef parallel = lookingDown(false);
    EXPECT_TRUE(parallel.IsInside(4, 2, 10) && parallel.IsInside(-4, -2, -20)) << "corners";
    EXPECT_FALSE(parallel.IsInside(std::nextafter(4, 5), 0, 0));
}

TEST(VpcFrustumDef, MeetsBoxesThatNoSinglePlaneCutsOff) {
    EXPECT_FALSE(lookingDown(true).Intersects(Box(5, -1, 4, 9, 1, 6)));
    EXPECT_TRUE(lookingDown(false).Intersects(Box(4, 2, 10, 9, 9, 19))) << "touches a corner";
    EXPECT_TRUE(lookingDown(true).Intersects(Box(10, 5, -40, 30, 30, -15))) << "though outside";
    const Box behind(-1, -1, 11, 1, 1, 12);
    EXPECT_TRUE(lookingDown(true).Intersects(behind)) << "perspective has no near plane";
    EXPECT_FALSE(lookingDown(false).Intersects(behind));
}

TEST(VpcFrustumDef, ChangesItsFieldBetweenItsEnds) {
    VpcFrustumDef frustum = lookingDown(true);
    EXPECT_TRUE(std::isnan(frustum.GetPlanes()[VpcFrustumDef::PlaneNear].normal.x));
    frustum.UpdateOrthographic(2, 6);
    std::string vertices;
    for (const VpcPoint3D& v : frustum.GetRefVertices())
        vertices += vpc::test::joined(v.x, v.y, v.z) + ", ";
    EXPECT_EQ(vertices,
              "-1 3 -20, 1 3 -20, -1 -3 -20, 1 -3 -20, -1 3 10, 1 3 10, -1 -3 10, 1 -3 10, ");
    frustum.UpdatePerspective(1, 1);
    EXPECT_TRUE(frustum.IsWithinRadiusFromCenterAxis(VpcPoint3D(0, 3, 99)));
    EXPECT_FALSE(frustum.IsWithinRadiusFromCenterAxis(VpcPoint3D(3, 3, 0)));
}

TEST(VpcFrustumDef, DegenerateCamerasExcludeNothing) {
    VpcFrustumDef frustum;
    frustum.UpdateViewGeometry(target, target, up, 10, 8, 4, true, {});
    EXPECT_TRUE(frustum.IsInside(1, 2, 3) && frustum.Intersects(Box(5, 5, 5, 6, 6, 6)));
    // A pick in the camera itself falls back on the view direction.
    frustum.UpdatePickGeometry(camera, target, camera, up, 10, 1, 1, true, {});
    EXPECT_TRUE(frustum.IsInside(0, 0, 0) && !frustum.IsInside(1, 0, 0));
}

}  // namespace
