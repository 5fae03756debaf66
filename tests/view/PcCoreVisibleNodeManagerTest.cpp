#include "view/PcCoreVisibleNodeManager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "io/PlyIO.h"
#include "support/LocaleGuard.h"
#include "support/ViewFixture.h"
#include "tree/disk/VpcDiskNode.h"
#include "view/CameraPoints.h"

namespace vpc::test {
namespace {

using PcCoreVisibleNodeManagerTest = ViewTest;

/// The ramps as "from to" of red, green and blue; Spectrum (1) is not one of them.
constexpr std::array<std::array<double, 6>, 8> ramps{{{},
                                                      {},
                                                      {195, 255, 95, 255, 0, 0},
                                                      {0, 0, 0, 191, 38, 288},
                                                      {0, 255, 0, 255, 0, 255},
                                                      {38, 255, 0, 0, 0, 0},
                                                      {0, 0, 38, 255, 0, 0},
                                                      {0, 0, 0, 0, 38, 255}}};

/// Undefined values, where all are the same, become 0.
std::uint32_t painted(std::uint32_t before, double value, double min, double max,
                      std::size_t scheme) {
    if (scheme == 0) return before;
    constexpr std::array<double, 3> humps{192, 128, 64};
    std::uint32_t colour = before >> 24U;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        double c = 0;
        if (scheme == 1) {
            const double t = (value - min) * 255 / (max - min);
            c = 255 * std::fmin(1, std::fmax(0, 1.5 - std::fabs(t - humps[channel]) / 64));
        } else {
            const double from = ramps[scheme][2 * channel], to = ramps[scheme][2 * channel + 1];
            c = (value - min) * (to - from) / (max - min) + from;
        }
        colour = colour << 8U | static_cast<std::uint32_t>(std::fmin(255, std::fmax(0, c)));
    }
    return colour;
}

TEST_F(PcCoreVisibleNodeManagerTest, ColoursByElevationAndIntensityInEveryScheme) {
    for (const bool areSame : {false, true}) {
        std::vector<PointRecord> cloud = makeCloud({CloudShape::Corner, 1500, 11});
        if (areSame) {
            cloud = makeCloud({CloudShape::Flat, 200});
            for (PointRecord& p : cloud) p.red = p.green = p.blue = 255;
        }
        load(cloud);
        const Pose pose = areSame ? Pose() : tilted();
        const ModelCamera camera =
            pose.placed({{50, 50, 300}, {50, 50, 50}, {0, 1, 0}, 400, 400, false});
        project().stylizationType = GiPc_Stylization_SCANCOLORS;
        project().colorScheme = GiPc_ColorScheme_Reds;
        ASSERT_EQ(update(camera, pose), cloud.size());
        const std::vector<ModelSlot> plain = slots();
        for (const bool byElevation : {true, false}) {
            std::vector<double> values;
            for (const auto& [at, c, size] : plain)
                values.push_back(byElevation ? at[2]
                                             : 0.2125 * (c >> 16U & 0xFF) +
                                                   0.7154 * (c >> 8U & 0xFF) + 0.0721 * (c & 0xFF));
            const auto [min, max] = std::minmax_element(values.begin(), values.end());
            EXPECT_EQ(*min == *max, areSame);
            project().stylizationType =
                byElevation ? GiPc_Stylization_ELEVATION : GiPc_Stylization_INTENSITY;
            for (std::size_t scheme = 0; scheme < ramps.size(); ++scheme) {
                SCOPED_TRACE(testing::Message() << byElevation << " scheme " << scheme);
                project().colorScheme = static_cast<GiPcColorScheme>(scheme);
                update(camera, pose);
                const std::vector<ModelSlot> coloured = slots();
                ASSERT_EQ(coloured.size(), plain.size());
                for (std::size_t i = 0; i < plain.size(); ++i) {
                    ASSERT_EQ(coloured[i].world, plain[i].world);
                    ASSERT_EQ(coloured[i].colour,
                              painted(plain[i].colour, values[i], *min, *max, scheme));
                    ASSERT_TRUE(byElevation || buffers().intensities()[i] == values[i]);
                }
            }
        }
    }
}

TEST_F(PcCoreVisibleNodeManagerTest, ResizesToEmptyBuffers) {
    load(1500);
    PcCoreVisibleNodeManager& manager = buffers();
    EXPECT_EQ(manager.capacity, 5'000'000U);
    // No such memory: the wanted capacity is told, and the old buffers go on working.
    ASSERT_TRUE(manager.resizePointBuffer(100));
    std::vector<Word> refused = {~0ULL, ~0ULL / 24};
#ifndef __SANITIZE_ADDRESS__
    // The sanitizer ends the program where the system just has no such memory.
    refused.push_back(1ULL << 57U);
#endif
    for (const Word tooMany : refused) {
        ASSERT_GT(update(overview), 0U);
        EXPECT_FALSE(manager.resizePointBuffer(tooMany));
        EXPECT_EQ(manager.capacity, tooMany);
        EXPECT_EQ(manager.nrPointsInBuffer, 0U);
        EXPECT_LE(update(overview), 100U);
    }
    ASSERT_TRUE(manager.resizePointBuffer(51));
    EXPECT_EQ(manager.capacity, 51U);
    EXPECT_EQ(manager.nextSlot, 0U);
    for (int slot = 0; slot < 51; ++slot) {
        EXPECT_EQ(manager.coordinates()[slot], OdGePoint3d());
        EXPECT_EQ(manager.colours()[slot].color(), 0xC2000000);
    }
    OdGePoint3d found;
    EXPECT_FALSE(pick(overview, {}, {50, 50, 50}, 1000, found));
}

TEST_F(PcCoreVisibleNodeManagerTest, PicksTheFirstSlotInTheNearestNode) {
    load(3000);
    ViewModel model{folder.tree()};
    model.capacity = 3500;
    ASSERT_TRUE(buffers().resizePointBuffer(3500));
    model.pose = tilted();
    int hits = 0, misses = 0, later = 0;
    for (const bool perspective : {true, false}) {
        const ModelCamera camera =
            model.pose.placed({{50, -120, 60}, {50, 50, 45}, {0.1, 0.2, 1}, 180, 150, perspective});
        const ModelView view = model.view(camera);
        ASSERT_EQ(update(camera, model.pose), view.slots.size());
        for (std::size_t i = 0; i < view.slots.size(); i += 29) {
            for (const int pixels : {1, 9, 60}) {
                // Beside the point, as a user picks.
                const Doubles3 near = moved(view.slots[i].world, {0.3, 0.1, -0.2}, i % 2 ? 1 : 9);
                OdGePoint3d found(1, 2, 3);
                const auto expected =
                    model.pick(view, camera, near, camera.width / viewportWidth * pixels,
                               camera.height / viewportHeight * pixels);
                ASSERT_EQ(pick(camera, model.pose, near, pixels, found), expected.has_value());
                EXPECT_LT(distance(fromOd(found), expected.value_or(Doubles3{1, 2, 3})), 1e-9);
                EXPECT_EQ(camPointOda, toOd(camera.eye));
                hits += expected.has_value();
                misses += !expected.has_value();
                later += expected && distance(*expected, view.slots[i].world) > 1e-6;
            }
        }
        const auto& met = buffers().pickNodes();
        EXPECT_TRUE(std::is_sorted(met.begin(), met.end(),
                                   PcCoreVisibleNodeManager::sortVisibleNodesToCameraDistance));
    }
    EXPECT_TRUE(hits > 50 && misses > 50 && later > 20);
    // Undefined points, as damaged files can give, come last: the order has to be a strict one.
    const OdGePoint3d undefined(std::nan(""), 0, 0), some;
    const auto isNearer = PcCoreVisibleNodeManager::sortPointsInNodeToCameraDistance;
    EXPECT_TRUE(isNearer(some, undefined));
    EXPECT_FALSE(isNearer(undefined, some) || isNearer(undefined, undefined));
}

TEST_F(PcCoreVisibleNodeManagerTest, NeverPicksANodesLastPoint) {
    const ModelCamera camera{{5, -30, 0.1}, {5, 0, 0}, {0, 0, 1}, 40, 40, false};
    OdGePoint3d found;
    load({PointRecord{1, 0, 0}});
    ASSERT_EQ(update(camera), 1U);
    EXPECT_FALSE(pick(camera, {}, {0, 0, 0}, 600, found)) << "the last one is the only one";
    load({PointRecord{1, 0, 0}, PointRecord{10, 0, 0}});
    ASSERT_EQ(update(camera), 2U);
    const OdGePoint3d first = toOd(slots()[0].world), last = toOd(slots()[1].world);
    EXPECT_TRUE(pick(camera, {}, fromOd(first), 5, found));
    EXPECT_EQ(found, first);
    EXPECT_FALSE(pick(camera, {}, fromOd(last), 5, found));
    EXPECT_FALSE(pick(camera, {}, fromOd(first), 0, found));
    // A pixel is a sixteenth wide, and a snap looks 5 of them far.
    OdArray<OdGePoint3d> snapped{{7, 7, 7}};
    for (const OdGePoint3d& at : {last, first, first + OdGeVector3d(0.17, 0, 0)})
        set.getOsnapPoints(at, {}, {}, toOd(tilted()), snapped);
    EXPECT_EQ(snapped, (OdArray<OdGePoint3d>{{7, 7, 7}, first}));
}

TEST_F(PcCoreVisibleNodeManagerTest, WritesTheViewAndThePick) {
    const LocaleGuard comma("de_DE.UTF-8");
    load(1000);
    const ModelCamera camera{{50, -100.5, 50}, {50, 50, 50}, {0, 0, 2}, 160, 240, false};
    ModelCamera pickCamera = camera;
    pickCamera.eye[1] = -200.25;
    const ViewModel model{folder.tree()};
    ASSERT_GT(update(camera), 0U);
    OdGePoint3d found;
    pick(pickCamera, {}, {20, 0, 30}, 12, found);
    // The data's bounds are those of the points, which no test needs to know in every digit.
    const auto bounds = [](const OdGePoint3d& p) {
        char text[200];
        const LocaleGuard point("C");
        std::snprintf(text, sizeof text, "(%lf, %lf, %lf)", p.x, p.y, p.z);
        return std::string(text);
    };
    const std::string folderName = folder.file("");
    project().exportView(toWx(folderName));
    project().exportPick(toWx(folder.path()));
    const std::string box = "Bounding box : min " + bounds(set.dataMin()) +
                            "\r\nBounding box : max " + bounds(set.dataMax()) +
                            "\r\nWorld width 160.000000, worldHeight = 240.000000\r\n";
    EXPECT_EQ(readBytes(folderName + "CameraParameters.txt"),
              "Camera position: (50.000000, -100.500000, 50.000000)\r\n"
              "Camera lookat  : (50.000000, 50.000000, 50.000000)\r\n"
              "Camera upVector: (0.000000, 0.000000, 2.000000)\r\n" +
                  box + "View near center: (50.000000, -100.500000, 50.000000)\r\n" +
                  "View far center:  " + bounds({50, model.reach(camera) - 100.5, 50}) +
                  "\r\n => so size of a pixel in world units is 0.250000\r\n"
                  "Current view mode => flat pyramid level selection \r\n");
    EXPECT_EQ(readBytes(folderName + "PickPointParameters.txt"),
              "Camera position: (50.000000, -200.250000, 50.000000)\r\n"
              "Camera lookat: (50.000000, 50.000000, 50.000000)\r\n"
              "Camera upVector: (0.000000, 0.000000, 2.000000)\r\n"
              "User pick point: (20.000000, 0.000000, 30.000000)\r\n" +
                  box + "Pick near center: (20.000000, -200.250000, 30.000000)\r\n" +
                  "Pick far center:  " + bounds({20, model.reach(pickCamera) - 200.25, 30}) +
                  "\r\n");
    // The others are as the writers of geometry write the same.
    const wxString expected = toWx(folder.file("expected.ply"));
    const auto isExpected = [&](const char* name) {
        return readBytes(folderName + name) == readBytes(folder.file("expected.ply"));
    };
    const auto expectBoxes = [&](const char* name, const auto& nodes) {
        std::vector<VpcBoundingBoxAxisAligned> boxes;
        for (const VisiblePointsNode& visible : nodes) boxes.push_back(visible.node->box);
        PlyIO::WriteAxisAlignedBoundingBoxes(boxes, expected);
        EXPECT_TRUE(isExpected(name)) << name;
    };
    expectBoxes("InViewFrustum.ply", buffers().visibleNodes());
    expectBoxes("InPickFrustum.ply", buffers().pickNodes());
    PlyIO::WriteFrustum(project().viewFrustum(), expected);
    EXPECT_TRUE(isExpected("CameraViewFrustum.ply"));
    PlyIO::WriteFrustum(project().pickFrustum(), expected);
    EXPECT_TRUE(isExpected("PickPointFrustum.ply"));
    const OdGePoint3d low = set.dataMin(), high = set.dataMax();
    PlyIO::WriteAxisAlignedBoundingBoxes({{low.x, low.y, low.z, high.x, high.y, high.z}}, expected);
    EXPECT_TRUE(isExpected("DataBoundaries.ply"));
    EXPECT_GT(buffers().visibleNodes().size(), buffers().pickNodes().size());
    EXPECT_GT(buffers().pickNodes().size(), 1U);
    // The other mode, into a folder that is not there, fails without a word.
    for (const std::string& where : {folderName + "none", folderName})
        buffers().exportVisibleNodesAsPly(toWx(where), false, {}, {}, {}, {}, 1, 1, 1,
                                          project().viewFrustum());
    EXPECT_THAT(readBytes(folderName + "CameraParameters.txt"),
                testing::EndsWith("Current view mode => dynamic pyramid node selection (increase "
                                  "closer to camera) \r\n"));
    update(camera);
    EXPECT_TRUE(buffers().pickNodes().empty());
}

}  // namespace
}  // namespace vpc::test
