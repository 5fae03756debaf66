#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/PrepareRun.h"
#include "support/ViewModel.h"
#include "view/PcCoreProjectManager.h"

namespace vpc::test {

inline OdGePoint3d toOd(const Doubles3& p) {
    return {p[0], p[1], p[2]};
}
inline OdGeVector3d toOdVector(const Doubles3& v) {
    return {v[0], v[1], v[2]};
}
inline Doubles3 fromOd(const OdGePoint3d& p) {
    return {p.x, p.y, p.z};
}
inline OdGeMatrix3d toOd(const Pose& pose) {
    OdGeMatrix3d matrix;
    int row = 0;
    for (const Doubles3& r : pose.rows) {
        matrix[row][0] = r[0], matrix[row][1] = r[1], matrix[row][2] = r[2];
        matrix[row][3] = pose.shift[static_cast<std::size_t>(row)];
        ++row;
    }
    return matrix;
}

/// A prepared tree file, and a project that has it loaded.
class ViewTest : public ::testing::Test {
protected:
    static constexpr int viewportWidth = 640;
    static constexpr int viewportHeight = 480;
    static constexpr Word hostValue = 6;

    /// Prepares and loads points of a scanner that measures in other units, in which some points
    /// are nearer to it than 1.
    void load(std::vector<PointRecord> points) {
        for (PointRecord& p : points) p.x /= 50, p.y /= 50, p.z /= 50;
        folder.prepareTree({points, {50, 0, 0, 0, 50, 0, 0, 0, 50, 0, 0, 0}},
                           {hostValue, false, 120, 10});
        ASSERT_TRUE(project.loadProjectFromFile(toWx(folder.output())));
    }
    void load(std::size_t points, CloudShape shape = CloudShape::Corner) {
        load(makeCloud({shape, points, 11}));
    }
    Word update(const ModelCamera& camera, const Pose& pose = {}) {
        return project.updateVisiblePoints(toOd(pose), toOd(camera.eye), toOd(camera.target),
                                           toOdVector(camera.up), camera.width, camera.height,
                                           viewportWidth, viewportHeight, camera.perspective);
    }
    bool pick(const ModelCamera& camera, const Pose& pose, const Doubles3& at, int pixels,
              OdGePoint3d& found) {
        unsigned short colour = 7;
        const bool hit = project.pickPointFast(toOd(pose), toOd(camera.eye), toOd(camera.target),
                                               toOdVector(camera.up), camera.width, camera.height,
                                               viewportWidth, viewportHeight, camera.perspective,
                                               toOd(at), pixels, found, colour, colour, colour);
        EXPECT_EQ(colour, 7);
        return hit;
    }
    PcCoreVisibleNodeManager& buffers() { return project.visibleNodeManager(); }

    /// The buffers' slots, colours as they are.
    std::vector<ModelSlot> slots() {
        std::vector<ModelSlot> result;
        for (Word i = 0; i < buffers().nrPointsInBuffer; ++i)
            result.push_back({fromOd(buffers().coordinates()[i]), buffers().colours()[i].color(),
                              buffers().sizes()[i]});
        return result;
    }

    PrepareFolder folder;
    PcCoreProjectManager project;
};

/// A camera that sees the whole cube from 0 to 100 from the south.
inline const ModelCamera overview{{50, -150, 120}, {50, 50, 50}, {0, 0.33, 0.94}, 320, 240, true};

/// A pose that is neither the identity nor along the axes.
inline Pose tilted() {
    const Doubles3 x = unit({2, 1, 0.5});
    const Doubles3 y = unit(cross({0, 0, 1}, x));
    return {{x, y, cross(x, y)}, {1000, -500, 30}};
}

}  // namespace vpc::test
