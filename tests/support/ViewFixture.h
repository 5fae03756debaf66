#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "core/util/StringTools.h"
#include "core/util/VpcDefinitions.h"
#include "host/PcCorePointSet.h"
#include "platform/OdSystemVariables.h"
#include "support/PrepareRun.h"
#include "support/ViewModel.h"
#include "view/PcCoreProjectManager.h"

namespace vpc::test {

inline OdString toOd(const std::string& path) {
    return StringTools::ToOdString(toWx(path));
}
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

/// Sets POINTCLOUDPOINTMAX for one test.
class PointMaxGuard {
public:
    explicit PointMaxGuard(int value) { set(value); }
    PointMaxGuard(const PointMaxGuard&) = delete;
    PointMaxGuard& operator=(const PointMaxGuard&) = delete;
    ~PointMaxGuard() { set(before_); }

    void set(int value) const { odSystemVariables().setInt("POINTCLOUDPOINTMAX", value); }

private:
    int before_ = odSystemVariables().getInt("POINTCLOUDPOINTMAX");
};

/// A prepared tree file, and the point set by which a host shows it.
class ViewTest : public ::testing::Test {
protected:
    static constexpr int viewportWidth = 640;
    static constexpr int viewportHeight = 480;

    /// Prepares and loads points of a scanner that measures in other units, in which some points
    /// are nearer to it than 1.
    void load(std::vector<PointRecord> points) {
        for (PointRecord& p : points) p.x /= 50, p.y /= 50, p.z /= 50;
        folder.prepareTree({points, {50, 0, 0, 0, 50, 0, 0, 0, 50, 0, 0, 0}}, {6, false, 120, 10});
        ASSERT_TRUE(set.loadProjectFromFile(name()));
    }
    void load(std::size_t points, CloudShape shape = CloudShape::Corner) {
        load(makeCloud({shape, points, 11}));
    }
    OdString name() const { return toOd(folder.output()); }
    /// Writes a word into the file; the version is the first.
    void patch(std::size_t position, Word word) const {
        std::string bytes = readBytes(folder.output());
        std::memcpy(bytes.data() + position, &word, sizeof word);
        writeBytes(folder.output(), bytes);
    }
    static Word update(GiPointSetDefinition& shown, const ModelCamera& camera,
                       const Pose& pose = {}) {
        return shown.updateVisiblePoints(toOd(pose), toOd(camera.eye), toOd(camera.target),
                                         toOdVector(camera.up), camera.width, camera.height,
                                         viewportWidth, viewportHeight, camera.perspective);
    }
    Word update(const ModelCamera& camera, const Pose& pose = {}) {
        return update(set, camera, pose);
    }
    bool pick(const ModelCamera& camera, const Pose& pose, const Doubles3& at, int pixels,
              OdGePoint3d& found) {
        unsigned short colour = 7;
        const bool hit = project().pickPointFast(toOd(pose), toOd(camera.eye), toOd(camera.target),
                                                 toOdVector(camera.up), camera.width, camera.height,
                                                 viewportWidth, viewportHeight, camera.perspective,
                                                 toOd(at), pixels, found, colour, colour, colour);
        EXPECT_EQ(colour, 7);
        return hit;
    }
    PcCoreProjectManager& project() { return *set.projectManager(); }
    PcCoreVisibleNodeManager& buffers() { return project().visibleNodeManager(); }

    /// What the host is given to draw, colours as they are.
    std::vector<ModelSlot> slots() {
        std::vector<ModelSlot> result;
        for (Word i = 0; i < set.getNrVisiblePoints(); ++i)
            result.push_back({fromOd(set.getPointCoordinates()[i]), set.getPointColors()[i].color(),
                              set.getPointSizes()[i]});
        return result;
    }

    const PrepareFolder folder;
    /// Too small to change the buffers.
    const PointMaxGuard pointMax{50};
    PcCorePointSet set;
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
