#include "view/PcCoreProjectManager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <set>

#include "core/util/StringTools.h"
#include "support/ViewFixture.h"
#include "tree/disk/VpcDiskNode.h"
#include "tree/disk/VpcDiskTree.h"
#include "view/NodeHeap.h"

namespace vpc::test {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

class PcCoreProjectManagerTest : public ViewTest {
protected:
    void SetUp() override {
        load(unevenCloud(4000));
        if (!HasFatalFailure()) model.emplace(TreeFile(readBytes(folder.output())));
    }
    void setBudget(Word slots, bool lowDensity = false) {
        ASSERT_TRUE(buffers().resizePointBuffer(slots));
        model->capacity = slots;
        model->lowDensity = lowDensity;
        project.drawDensity = lowDensity ? GiPc_DrawDensity_Low : GiPc_DrawDensity_Full;
    }
    /// Moves a camera that is given in the tree's frame along with the cloud.
    static ModelCamera along(const Pose& pose, ModelCamera camera) {
        const Doubles3 up = moved(pose.toWorld(camera.up), pose.shift, -1);
        return {
            pose.toWorld(camera.eye), pose.toWorld(camera.target), up, camera.width, camera.height,
            camera.perspective};
    }
    void expectView(const ModelView& expected, Word count) {
        EXPECT_EQ(project.selectedLevel, expected.level);
        EXPECT_EQ(count, expected.slots.size());
        EXPECT_EQ(buffers().nextSlot, expected.slots.size());
    }
    /// Selects once more into what is left of the buffers. Returns whether a node did not fit.
    bool expectSecondSelection(const ModelCamera& camera, const ModelView& first) {
        const ModelView expected = model->view(camera, first);
        EXPECT_EQ(project.flatNodeSelection(project.viewFrustum()).size(), expected.selected);
        EXPECT_EQ(buffers().nrPointsInBuffer, expected.slots.size());
        expectNodes(expected);
        return expected.nodes.size() < first.nodes.size() + expected.selected;
    }
    void expectBuffers(const ModelView& expected) {
        const std::vector<ModelSlot> shown = slots();
        ASSERT_EQ(shown.size(), expected.slots.size());
        for (std::size_t i = 0; i < shown.size(); ++i) {
            ASSERT_LT(distance(shown[i].world, expected.slots[i].world), 1e-9) << i;
            ASSERT_EQ(shown[i].colour, expected.slots[i].colour) << i;
            ASSERT_EQ(shown[i].size, expected.slots[i].size) << i;
        }
        expectNodes(expected);
    }
    void expectNodes(const ModelView& expected) {
        ASSERT_EQ(buffers().visibleNodes().size(), expected.nodes.size());
        for (std::size_t i = 0; i < expected.nodes.size(); ++i) {
            const VisiblePointsNode& visible = buffers().visibleNodes()[i];
            ASSERT_EQ(visible.firstSlot, expected.nodes[i].first);
            ASSERT_EQ(visible.lastSlot, expected.nodes[i].last);
            ASSERT_EQ(visible.node->pointsOffset, expected.nodes[i].node->listPosition);
        }
    }

    std::optional<ViewModel> model;
};

const std::vector<ModelCamera> cameras = {
    overview,
    {{50, -150, 120}, {50, 50, 50}, {0, 0.33, 0.94}, 60, 45, true},
    {{40, 45, 52}, {80, 60, 50}, {0.1, 0, 1}, 30, 30, true},
    {{12, 12, 12}, {11, 15, 10}, {1, 0, 0}, 5, 5, true},
    {{-20, 50, 50}, {50, 50, 50}, {0, 0, 1}, 40, 40, false},
    {{50, 50, 300}, {50, 51, 0}, {0.6, 0.8, 0}, 300, 200, false},
    {{30, 30, 30}, {60, 80, 90}, {0, 0, 2}, 25, 10, false},
    {{-300, 50, 50}, {-400, 60, 50}, {0, 0, 1}, 20, 20, true},
    {{-300, 50, 50}, {50, 60, 950}, {0, 1, 0}, 40, 40, false},
};

TEST_F(PcCoreProjectManagerTest, ShowsTheDeepestLevelThatTheBudgetAllows) {
    std::set<Word> levels;
    std::set<bool> leftOut;
    for (const Pose& pose : {Pose(), tilted()}) {
        model->pose = pose;
        for (const Word budget : {51U, 300U, 700U, 1500U, 3000U, 4001U, 4002U, 21000U}) {
            for (const bool lowDensity : {false, true}) {
                setBudget(budget, lowDensity);
                for (std::size_t i = 0; i < cameras.size(); ++i) {
                    SCOPED_TRACE(testing::Message() << budget << lowDensity << " camera " << i);
                    const ModelCamera camera = along(pose, cameras[i]);
                    const ModelView expected = model->view(camera);
                    const Word count = update(camera, pose);
                    expectBuffers(expected);
                    expectView(expected, count);
                    levels.insert(expected.level);
                    leftOut.insert(expectSecondSelection(camera, expected));
                }
            }
        }
    }
    EXPECT_EQ(levels.size(), model->levels.size());
    EXPECT_EQ(leftOut.size(), 2U);
}

TEST_F(PcCoreProjectManagerTest, CutsAtSectionsAndClippings) {
    const Pose pose = tilted();
    model->pose = pose;
    setBudget(5000);
    const ModelCamera camera = along(pose, overview);
    // Two planes in the world, a circle to keep and a triangle to leave out in the tree's frame.
    const Doubles3 inWorld = pose.toWorld({60, 50, 40});
    const std::array<Doubles3, 2> normals{{{1, 2, -1}, {-1, 0.5, 0}}};
    const auto beforePlanes = [&](const Doubles3& p) {
        const Doubles3 d = moved(pose.toWorld(p), inWorld, -1);
        return dot(d, normals[0]) >= 0 && dot(d, normals[1]) >= 0;
    };
    const auto inCircle = [](const Doubles3& p) { return std::hypot(p[0] - 50, p[1] - 50) <= 45; };
    const auto inTriangle = [](const Doubles3& p) {
        return p[1] >= 20 && p[1] - 20 <= 2 * (p[0] - 20) && p[1] - 20 <= 2 * (100 - p[0]);
    };
    GiPcClipConfig circle;
    circle.flag2 = true;
    circle.vertices = {{50, 50}, {50, 95}};
    GiPcClipConfig triangle;
    triangle.type = 1;
    triangle.vertices = {{20, 20}, {100, 20}, {60, 100}};

    std::size_t shown = 5000;
    const auto expectFewer = [&](const std::function<bool(const Doubles3&)>& filter) {
        model->filter = filter;
        const ModelView expected = model->view(camera);
        EXPECT_EQ(update(camera, pose), expected.slots.size());
        expectBuffers(expected);
        EXPECT_LT(expected.slots.size(), shown);
        shown = expected.slots.size();
    };
    project.addClipping(circle);
    expectFewer(inCircle);
    project.addClipping(triangle);
    expectFewer([&](const Doubles3& p) { return inCircle(p) && !inTriangle(p); });
    for (const Doubles3& normal : normals)
        EXPECT_TRUE(project.addSection("cut", toOd(inWorld), toOdVector(normal), false));
    expectFewer(
        [&](const Doubles3& p) { return beforePlanes(p) && inCircle(p) && !inTriangle(p); });
    EXPECT_GT(shown, 0U);
    project.clearClippings();
    project.toggleEnableDisableSections();
    shown = 5000;
    expectFewer([](const Doubles3&) { return true; });
    project.toggleEnableDisableSections();
    expectFewer(beforePlanes);

    // The regions of two circles that do not meet leave nothing, and nothing is recorded.
    circle.vertices = {{10, 10}, {10, 20}};
    project.addClipping(circle);
    circle.vertices = {{90, 90}, {90, 95}};
    project.addClipping(circle);
    EXPECT_EQ(update(camera, pose), 0U);
    EXPECT_TRUE(buffers().visibleNodes().empty());
    EXPECT_TRUE(project.deleteSections(true));
    project.removeLastClipping();
    EXPECT_GT(update(camera, pose), 0U);
    project.removeLastClipping();
    project.removeLastClipping();
    EXPECT_TRUE(project.clippings().empty());
}

TEST_F(PcCoreProjectManagerTest, TellsSectionsWithTheRolesOfPointAndNormalExchanged) {
    EXPECT_TRUE(project.hasSameSections({}));
    project.addSection("a", {1, 2, 3}, {0, 0, 2}, true);
    EXPECT_TRUE(project.sectionsEnabled);
    EXPECT_TRUE(project.hasSameSections({{{0, 0, 1}, {9, 9, 3}}}));
    EXPECT_FALSE(project.hasSameSections({{{1, 2, 3}, {0, 0, 2}}}));
    EXPECT_FALSE(project.hasSameSections({{{0, 0, 1}, {9, 9, 3.00001}}}));
    EXPECT_FALSE(project.hasSameSections({}));
    project.toggleEnableDisableSections();
    EXPECT_FALSE(project.sectionsEnabled);
    EXPECT_EQ(project.sections().size(), 1U);
}

TEST_F(PcCoreProjectManagerTest, TellsAChangedView) {
    const ModelCamera camera{{10, 20, 30}, {40, 50, 60}, {0.1, 0.2, 0.3}, 70, 80, true};
    update(camera);
    // The eleven values of a view in their order, one of them times a factor.
    const auto isChanged = [&](std::size_t which, double factor, int pixels = viewportWidth) {
        std::array<double, 11> v{10, 20, 30, 40, 50, 60, 0.1, 0.2, 0.3, 70, 80};
        if (which < v.size()) v[which] *= factor;
        return project.hasViewGeometryChanged(toOd(tilted()), {v[0], v[1], v[2]},
                                              {v[3], v[4], v[5]}, {v[6], v[7], v[8]}, v[9], v[10],
                                              pixels, 1, which != 11);
    };
    for (std::size_t i = 0; i < 11; ++i) {
        EXPECT_FALSE(isChanged(i, 1.000999)) << i;
        EXPECT_TRUE(isChanged(i, 1.001001)) << i;
        EXPECT_FALSE(isChanged(i, 0.999001)) << i;
        EXPECT_TRUE(isChanged(i, -1)) << i;
        EXPECT_TRUE(isChanged(i, nan)) << i;
    }
    EXPECT_TRUE(isChanged(11, 1));
    EXPECT_FALSE(isChanged(12, 1, 9));

    ModelCamera onAxis = camera;
    onAxis.target[1] = 0;
    update(onAxis);
    EXPECT_TRUE(project.hasViewGeometryChanged({}, {10, 20, 30}, {40, 0, 60}, {0.1, 0.2, 0.3}, 70,
                                               80, viewportWidth, viewportHeight, true));
}

TEST_F(PcCoreProjectManagerTest, EveryUpdateIsFlatAndWritesNoFiles) {
    project.useFlatView = false;
    project.drawGeometry = true;
    setBudget(700);
    update(overview);
    EXPECT_TRUE(project.useFlatView);
    EXPECT_FALSE(project.drawGeometry);
    EXPECT_EQ(project.pixelSize, 0.5);
    EXPECT_DOUBLE_EQ(project.cameraDistance, model->reach(overview) / 3);
    EXPECT_FALSE(std::filesystem::exists(folder.folder.file("CameraParameters.txt")));
}

TEST_F(PcCoreProjectManagerTest, TheDynamicSelectionRefinesAsFarAsTheBudgetAllows) {
    std::set<std::size_t> sizes;
    for (const Word budget : {51U, 200U, 500U, 1000U, 2000U, 3900U, 10000U}) {
        setBudget(budget);
        for (const ModelCamera& camera : cameras) {
            update(camera);
            buffers().clear();
            const VpcFrustumDef& frustum = project.viewFrustum();
            const auto selected = project.dynamicNodeSelection(frustum);
            sizes.insert(selected.size());
            const Word total = project.getNrPointsInSelectedNodes(selected);
            EXPECT_EQ(buffers().nrPointsInBuffer, std::min(total, budget));
            std::set<const VpcDiskNode*> above;
            for (const VpcDiskNode* node : selected)
                for (node = node->parent; node != nullptr; node = node->parent) above.insert(node);
            for (VpcDiskNode* const node : selected) {
                EXPECT_TRUE(frustum.Intersects(node->box));
                EXPECT_EQ(above.count(node), 0U);
                std::vector<VpcDiskNode*> children;
                const auto [own, below] =
                    project.checkReplaceParentByVisibleChildren(frustum, node, children);
                EXPECT_EQ(own, node->nrPoints);
                // No node is left that could have been replaced.
                if (own > 0 && below > 0) {
                    EXPECT_TRUE(total >= budget || total - own + below >= budget);
                }
            }
            // What was refined is shown by all of its visible children, or by theirs.
            for (const VpcDiskNode* const node : above) {
                for (const VpcDiskNode* const child : node->children) {
                    if (!frustum.Intersects(child->box)) continue;
                    if (child->nrPoints == 0 && child->children.empty()) continue;
                    const bool listed =
                        std::find(selected.begin(), selected.end(), child) != selected.end();
                    EXPECT_TRUE(listed || above.count(child) == 1);
                }
            }
        }
    }
    EXPECT_GT(sizes.size(), 5U);
}

TEST_F(PcCoreProjectManagerTest, TheNodeHeapGivesTheSparsestFirst) {
    std::vector<VpcDiskNode*> heap;
    for (const auto& level : project.tree()->GetLevels())
        for (VpcDiskNode* const node : level) PushNode(heap, node);
    const std::size_t size = heap.size();
    PopNode(heap, -1);
    PopNode(heap, static_cast<int>(size));
    ASSERT_EQ(heap.size(), size);
    std::vector<double> densities;
    for (; !heap.empty(); PopNode(heap, 0)) densities.push_back(heap.front()->density);
    EXPECT_EQ(densities.size(), size);
    EXPECT_TRUE(std::is_sorted(densities.begin(), densities.end()));
}

TEST_F(PcCoreProjectManagerTest, AViewWithoutExtentSelectsNothing) {
    setBudget(5000);
    ASSERT_GT(update(overview), 0U);
    using Change = std::function<void(ModelCamera&)>;
    const std::vector<Change> changes = {
        [](ModelCamera& c) { c.width = 0; },
        [](ModelCamera& c) { c.height = 0; },
        [](ModelCamera& c) { c.target = c.eye; },
        [](ModelCamera& c) { c.up = {}; },
        [](ModelCamera& c) { c.eye[1] = nan; },
        [](ModelCamera& c) { c.width = std::numeric_limits<double>::infinity(); },
        [](ModelCamera& c) { c.up = moved(c.eye, c.target, -1); }};
    OdGePoint3d found;
    for (const bool perspective : {false, true}) {
        for (std::size_t i = 0; i < changes.size(); ++i) {
            ModelCamera camera = overview;
            camera.perspective = perspective;
            changes[i](camera);
            EXPECT_FALSE(pick(camera, {}, {50, 50, 50}, 600, found)) << i;
            EXPECT_EQ(update(camera), 0U) << i;
            EXPECT_TRUE(buffers().visibleNodes().empty()) << i;
            update(overview);
        }
    }
    for (const auto& [width, height] : {std::pair(0, 480), std::pair(640, 0)})
        EXPECT_EQ(
            project.updateVisiblePoints({}, toOd(overview.eye), toOd(overview.target),
                                        toOdVector(overview.up), 320, 240, width, height, true),
            0U);
}

TEST_F(PcCoreProjectManagerTest, TellsWhatTheFileHolds) {
    EXPECT_EQ(project.pointModelUnit(), hostValue);
    EXPECT_EQ(project.totalNrPoints, 4000U);
    EXPECT_EQ(project.selectedLevel, 1U);
    EXPECT_EQ(project.workingFolder(), toWx(folder.folder.file("")));
    const TreeFile file(readBytes(folder.output()));
    const TreeNode& inFile = file.levels.front().front();
    const TreeNode& root = model->levels.front().front();
    OdGePoint3d low, high;
    ASSERT_TRUE(PcCoreProjectManager::readDataMinMax(StringTools::ToOdString(toWx(folder.output())),
                                                     low, high));
    for (std::size_t axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(fromOd(low)[axis], inFile.boxMin[axis]);
        EXPECT_EQ(fromOd(high)[axis], inFile.boxMax[axis]);
        const double growth = 0.025 * (root.boxMax[axis] - root.boxMin[axis]);
        EXPECT_NEAR(fromOd(project.dataMin())[axis], root.boxMin[axis] - growth, 1e-9);
        EXPECT_NEAR(fromOd(project.dataMax())[axis], root.boxMax[axis] + growth, 1e-9);
    }
    // A file that cannot be loaded leaves the project as it is.
    std::string bytes = readBytes(folder.output());
    EXPECT_FALSE(project.loadProjectFromFile(toWx(folder.folder.file("none.vpt"))));
    writeBytes(folder.folder.file("cut.vpt"), bytes.substr(0, bytes.size() / 2));
    EXPECT_FALSE(project.loadProjectFromFile(toWx(folder.folder.file("cut.vpt"))));
    bytes[0] = 8;
    writeBytes(folder.folder.file("old.vpt"), bytes);
    EXPECT_FALSE(project.loadProjectFromFile(toWx(folder.folder.file("old.vpt"))));
    EXPECT_EQ(project.totalNrPoints, 4000U);
    EXPECT_GT(update(overview), 0U);
}

TEST_F(ViewTest, CopesWithATreeWithoutNodesAndWithNone) {
    const auto expectNothing = [this] {
        EXPECT_EQ(update(overview), 0U);
        EXPECT_EQ(project.getNrPointsInFrustumLOD(project.viewFrustum(), 0), 0U);
        EXPECT_TRUE(project.flatNodeSelection(project.viewFrustum()).empty());
        EXPECT_TRUE(project.dynamicNodeSelection(project.viewFrustum()).empty());
        OdGePoint3d found;
        EXPECT_FALSE(pick(overview, {}, {50, 50, 50}, 9, found));
        EXPECT_EQ(project.totalNrPoints, 0U);
        EXPECT_EQ(project.dataMin().x, 1e80);
    };
    expectNothing();
    std::string bytes(143, '\0');
    bytes[0] = 9;
    bytes[127] = 54;
    writeBytes(folder.output(), bytes);
    ASSERT_TRUE(project.loadProjectFromFile(toWx(folder.output())));
    expectNothing();
    OdGePoint3d low, high;
    EXPECT_FALSE(PcCoreProjectManager::readDataMinMax(
        StringTools::ToOdString(toWx(folder.output())), low, high));
}

}  // namespace
}  // namespace vpc::test
