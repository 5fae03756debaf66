#include "core/geometry/VpcFrustumDef.h"

#include <cmath>

#include <gtest/gtest.h>

namespace {

// What a frustum holds and meets is compared with a model of its own in the tests of views. These
// are its borders, and what views do not ask it.

using Box = VpcBoundingBoxAxisAligned;

const VpcPoint3D camera(0, 0, 10), target(0, 0, 0);
const VpcVector3D up(0, 2, 0);

/// Looks down from (0, 0, 10) onto a field of 8 by 4 around the origin, and down to z = -20.
VpcFrustumDef lookingDown(bool perspective) {
    VpcFrustumDef frustum;
    EXPECT_TRUE(frustum.UpdateViewGeometry(camera, target, up, 10, 8, 4, perspective, {}));
    return frustum;
}

TEST(VpcFrustumDef, BelongsToItselfWithItsBorder) {
    const VpcFrustumDef parallel = lookingDown(false);
    EXPECT_TRUE(parallel.IsInside(4, 2, 10) && parallel.IsInside(-4, -2, -20)) << "corners";
    EXPECT_FALSE(parallel.IsInside(std::nextafter(4, 5), 0, 0));
    EXPECT_TRUE(parallel.Intersects(Box(4, 2, 10, 9, 9, 19))) << "touches a corner";
    EXPECT_TRUE(lookingDown(true).Intersects(Box(10, 5, -40, 30, 30, -15))) << "though outside";
    const Box behind(-1, -1, 11, 1, 1, 12);
    EXPECT_TRUE(lookingDown(true).Intersects(behind)) << "perspective has no near plane";
    EXPECT_FALSE(parallel.Intersects(behind));
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
