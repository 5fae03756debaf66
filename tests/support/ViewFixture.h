#pragma once

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "support/PrepareRun.h"
#include "support/ScanFiles.h"
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
    for (int row = 0; row < 3; ++row) {
        const auto r = static_cast<std::size_t>(row);
        for (int column = 0; column < 3; ++column)
            matrix[row][column] = pose.rows[r][static_cast<std::size_t>(column)];
        matrix[row][3] = pose.shift[r];
    }
    return matrix;
}

/// Points in the box from 0 to 100, with a dense corner, so that levels and nodes differ; their
/// scanner stands in the cloud, so that some are nearer to it than 1.
inline std::vector<PointRecord> unevenCloud(std::size_t count, double thickness = 100) {
    std::mt19937 engine(11);
    std::uniform_real_distribution<double> in(0, 1);
    std::vector<PointRecord> points(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double reach = i % 3 == 0 ? 25 : 100;
        points[i].x = reach * in(engine);
        points[i].y = reach * in(engine);
        points[i].z = thickness * in(engine);
        points[i].red = static_cast<std::uint16_t>(engine() % 256);
        points[i].green = static_cast<std::uint16_t>(engine() % 256);
        points[i].blue = static_cast<std::uint16_t>(engine() % 256);
        points[i].intensity = in(engine);
    }
    return points;
}

/// A prepared tree file, and a project that has it loaded.
class ViewTest : public ::testing::Test {
protected:
    static constexpr int viewportWidth = 640;
    static constexpr int viewportHeight = 480;
    static constexpr Word hostValue = 6;

    void load(const std::vector<PointRecord>& points) {
        PtxScan scan;
        scan.points = points;
        scan.transform = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0.001, 0, 0};
        writePtx(folder.scan("scan.ptx"), {scan});
        ReferenceSettings settings;
        settings.hostValue = hostValue;
        settings.maxPointsPerNode = 120;
        const auto result =
            prepare({folder.scan("scan.ptx")}, folder.work(), folder.output(), settings);
        ASSERT_TRUE(result.success) << result.message;
        ASSERT_TRUE(project.loadProjectFromFile(toWx(folder.output())));
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

/// A camera that sees the whole uneven cloud from the south.
inline const ModelCamera overview{{50, -150, 120}, {50, 50, 50}, {0, 0.33, 0.94}, 320, 240, true};

/// A pose that is neither the identity nor along the axes.
inline Pose tilted() {
    const Doubles3 x = unit({2, 1, 0.5});
    const Doubles3 y = unit(cross({0, 0, 1}, x));
    return {{x, y, cross(x, y)}, {1000, -500, 30}};
}

}  // namespace vpc::test
