#include "view/PcCoreProjectManager.h"

#include <limits>
#include <set>

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
        load(4000);
        if (!HasFatalFailure()) model.emplace(folder.tree());
    }
    void setBudget(Word slots, bool lowDensity = false) {
        ASSERT_TRUE(buffers().resizePointBuffer(slots));
        model->capacity = slots;
        model->lowDensity = lowDensity;
        project().drawDensity = lowDensity ? GiPc_DrawDensity_Low : GiPc_DrawDensity_Full;
    }
    /// Updates the view and holds it against the model's, which it returns.
    ModelView expectView(const ModelCamera& camera) {
        ModelView expected = model->view(camera);
        EXPECT_EQ(update(camera, model->pose), expected.slots.size());
        EXPECT_EQ(project().selectedLevel, expected.level);
        EXPECT_EQ(buffers().nextSlot, expected.slots.size());
        const std::vector<ModelSlot> shown = slots();
        const auto isSame = [](const ModelSlot& a, const ModelSlot& b) {
            return distance(a.world, b.world) < 1e-9 && a.colour == b.colour && a.size == b.size;
        };
        const auto other = std::mismatch(shown.begin(), shown.end(), expected.slots.begin(),
                                         expected.slots.end(), isSame);
        EXPECT_EQ(other.first - shown.begin(), static_cast<long>(expected.slots.size()))
            << "the first slot that differs";
        expectNodes(expected);
        return expected;
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
            for (std::size_t i = 0; i < 2 * cameras.size(); ++i) {
                SCOPED_TRACE(testing::Message() << "budget " << budget << ", case " << i);
                setBudget(budget, i % 2 == 1);
                const ModelCamera camera = pose.placed(cameras[i / 2]);
                const ModelView first = expectView(camera);
                levels.insert(first.level);
                // Selects once more into what is left of the buffers.
                const ModelView second = model->view(camera, first);
                EXPECT_EQ(project().flatNodeSelection(project().viewFrustum()).size(),
                          second.selected);
                EXPECT_EQ(buffers().nrPointsInBuffer, second.slots.size());
                expectNodes(second);
                leftOut.insert(second.nodes.size() < first.nodes.size() + second.selected);
            }
        }
    }
    EXPECT_EQ(levels.size(), model->levels.size());
    EXPECT_EQ(leftOut.size(), 2U);
}

TEST_F(PcCoreProjectManagerTest, CutsAtSectionsAndClippings) {
    model->pose = tilted();
    setBudget(5000);
    const ModelCamera camera = model->pose.placed(overview);
    // Two planes in the world, and circles in the tree's frame.
    const Doubles3 inWorld = model->pose.toWorld({60, 50, 40});
    const std::array<Doubles3, 2> normals{{{1, 2, -1}, {-1, 0.5, 0}}};
    const auto beforePlanes = [&](const Doubles3& p) {
        const Doubles3 d = moved(model->pose.toWorld(p), inWorld, -1);
        return dot(d, normals[0]) >= 0 && dot(d, normals[1]) >= 0;
    };
    const auto inCircle = [](const Doubles3& p, double centre, double radius) {
        return std::hypot(p[0] - centre, p[1] - centre) <= radius;
    };
    const auto addCircle = [&](double centre, double radius, bool keepsInside) {
        GiPcClipConfig circle;
        circle.flag2 = keepsInside;
        circle.vertices = {{centre, centre}, {centre, centre + radius}};
        EXPECT_TRUE(set.addClipping(circle));
    };
    std::set<std::size_t> counts;
    bool isCut = false, isOutside = false, isInside = false;
    model->filter = [&](const Doubles3& p) {
        return (!isCut || beforePlanes(p)) && (!isInside || inCircle(p, 50, 45)) &&
               (!isOutside || !inCircle(p, 40, 20));
    };
    const auto expectFiltered = [&](bool cut, bool outside, bool inside) {
        isCut = cut, isOutside = outside, isInside = inside;
        counts.insert(expectView(camera).slots.size());
    };
    addCircle(50, 45, true);
    addCircle(40, 20, false);
    expectFiltered(false, true, true);
    for (const Doubles3& normal : normals)
        EXPECT_TRUE(set.addSection("cut", toOd(inWorld), toOdVector(normal), false));
    expectFiltered(true, true, true);
    set.removeLastClipping();
    set.toggleEnableDisableSections();
    expectFiltered(false, false, true);
    set.clearClippings();
    set.toggleEnableDisableSections();
    expectFiltered(true, false, false);
    EXPECT_TRUE(set.clearSections(true));
    expectFiltered(false, false, false);
    // Two circles that do not meet leave nothing, and nothing is recorded.
    addCircle(10, 10, true);
    addCircle(90, 5, true);
    EXPECT_EQ(update(camera, model->pose), 0U);
    EXPECT_TRUE(buffers().visibleNodes().empty());
    EXPECT_EQ(counts.size(), 5U);
}

TEST_F(PcCoreProjectManagerTest, TellsSectionsWithTheRolesOfPointAndNormalExchanged) {
    EXPECT_TRUE(set.hasSameSections({}));
    set.addSection("a", {1, 2, 3}, {0, 0, 2}, true);
    EXPECT_TRUE(project().sectionsEnabled);
    EXPECT_TRUE(set.hasSameSections({{{0, 0, 1}, {9, 9, 3}}}));
    EXPECT_FALSE(set.hasSameSections({{{1, 2, 3}, {0, 0, 2}}}));
    EXPECT_FALSE(set.hasSameSections({{{0, 0, 1}, {9, 9, 3.00001}}}));
    EXPECT_FALSE(set.hasSameSections({}));
    set.clearSections(true);
    EXPECT_TRUE(set.hasSameSections({}) && !project().sectionsEnabled);
}

TEST_F(PcCoreProjectManagerTest, TellsAChangedView) {
    update({{10, 20, 30}, {40, 0, 60}, {0.1, 0.2, 0.3}, 70, 80, true});
    // The eleven values of a view in their order, one of them times a factor; one of them was 0.
    const auto isChanged = [&](std::size_t which, double factor, bool perspective = true) {
        std::array<double, 11> v{10, 20, 30, 40, 50, 60, 0.1, 0.2, 0.3, 70, 80};
        v[which] *= factor;
        return set.hasViewGeometryChanged(toOd(tilted()), {v[0], v[1], v[2]}, {v[3], v[4], v[5]},
                                          {v[6], v[7], v[8]}, v[9], v[10], 9, 1, perspective);
    };
    EXPECT_TRUE(isChanged(4, 0)) << "a value of 0 is never the same";
    update({{10, 20, 30}, {40, 50, 60}, {0.1, 0.2, 0.3}, 70, 80, true});
    for (std::size_t i = 0; i < 11; ++i) {
        EXPECT_FALSE(isChanged(i, 1.000999) || isChanged(i, 0.999001)) << i;
        EXPECT_TRUE(isChanged(i, 1.001001) && isChanged(i, -1) && isChanged(i, nan)) << i;
    }
    EXPECT_TRUE(isChanged(0, 1, false));
}

TEST_F(PcCoreProjectManagerTest, TheDynamicSelectionRefinesAsFarAsTheBudgetAllows) {
    load(4000, CloudShape::Clusters);  // some nodes hold a single point
    std::set<std::size_t> sizes;
    for (const Word budget : {51U, 200U, 500U, 1000U, 2000U, 4000U, 10000U}) {
        setBudget(budget);
        for (const ModelCamera& camera : cameras) {
            update(camera);
            buffers().clear();
            const VpcFrustumDef& frustum = project().viewFrustum();
            const auto selected = project().dynamicNodeSelection(frustum);
            sizes.insert(selected.size());
            const Word total = project().getNrPointsInSelectedNodes(selected);
            EXPECT_EQ(buffers().nrPointsInBuffer, std::min(total, budget));
            EXPECT_TRUE(selected.size() <= 1 || total < budget);
            for (VpcDiskNode* const node : selected) {
                EXPECT_TRUE(frustum.Intersects(node->box));
                EXPECT_TRUE(node->nrPoints > 0 || !node->children.empty());
                std::vector<VpcDiskNode*> visible;
                const auto [own, below] =
                    project().checkReplaceParentByVisibleChildren(frustum, node, visible);
                EXPECT_TRUE(own == 0 || below == 0 || total - own + below >= budget)
                    << "a node is left that could have been replaced";
            }
            // Every visible leaf is shown once, by itself or by a node above it.
            for (const VpcDiskNode* const leaf : project().tree()->GetLevels().back()) {
                if (leaf->nrPoints == 0 || !frustum.Intersects(leaf->box)) continue;
                long shown = 0;
                for (const VpcDiskNode* node = leaf; node != nullptr; node = node->parent)
                    shown += std::count(selected.begin(), selected.end(), node);
                EXPECT_EQ(shown, 1);
            }
        }
    }
    EXPECT_GT(sizes.size(), 5U);
}

TEST_F(PcCoreProjectManagerTest, TheNodeHeapGivesTheSparsestFirst) {
    std::vector<VpcDiskNode*> heap;
    for (VpcDiskNode* const node : project().tree()->GetLevels().back()) PushNode(heap, node);
    const std::size_t size = heap.size();
    for (const int none : {-1, static_cast<int>(size)}) PopNode(heap, none);
    std::vector<double> densities;
    for (; !heap.empty(); PopNode(heap, 0)) densities.push_back(heap.front()->density);
    EXPECT_EQ(densities.size(), size);
    EXPECT_TRUE(std::is_sorted(densities.begin(), densities.end()));
}

TEST_F(PcCoreProjectManagerTest, AViewWithoutExtentSelectsNothing) {
    setBudget(5000);
    OdGePoint3d found;
    const std::function<void(ModelCamera&)> faults[] = {
        [](ModelCamera& c) { c.width = 0; },
        [](ModelCamera& c) { c.height = 0; },
        [](ModelCamera& c) { c.width = std::numeric_limits<double>::infinity(); },
        [](ModelCamera& c) { c.target = c.eye; },
        [](ModelCamera& c) { c.eye[1] = nan; },
        [](ModelCamera& c) { c.up = {}; },
        [](ModelCamera& c) { c.up = moved(c.eye, c.target, -1); }};
    for (const auto& fault : faults) {
        ModelCamera camera = overview;
        fault(camera);
        ASSERT_GT(update(overview), 0U);
        EXPECT_FALSE(pick(camera, {}, {50, 50, 50}, 600, found)) << &fault - faults;
        EXPECT_EQ(update(camera), 0U) << &fault - faults;
        EXPECT_TRUE(buffers().visibleNodes().empty());
        EXPECT_EQ(project().selectedLevel, 0U);
    }
    const OdGePoint3d eye = toOd(overview.eye), target = toOd(overview.target);
    for (const int none : {0, 1})
        EXPECT_EQ(project().updateVisiblePoints({}, eye, target, {0, 0, 1}, 320, 240, none * 640,
                                                (1 - none) * 480, true),
                  0U);
}

TEST_F(PcCoreProjectManagerTest, TellsWhatTheFileHolds) {
    EXPECT_EQ(set.getPointModelUnit(), 6U);
    EXPECT_EQ(set.getTotalNrPoints(), 4000U);
    EXPECT_EQ(project().selectedLevel, 1U);
    EXPECT_EQ(set.drawDensity(), GiPc_DrawDensity_Full);
    EXPECT_EQ(set.stylizationType(), GiPc_Stylization_NONE);
    EXPECT_EQ(project().workingFolder(), toWx(folder.file("")));
    // Every update is flat and writes no files.
    project().useFlatView = false;
    project().drawGeometry = true;
    update(overview);
    EXPECT_TRUE(project().useFlatView);
    EXPECT_FALSE(project().drawGeometry);
    EXPECT_DOUBLE_EQ(project().cameraDistance, model->reach(overview) / 3);
    EXPECT_FALSE(std::filesystem::exists(folder.file("CameraParameters.txt")));
    // A file that cannot be loaded leaves the project as it is.
    patch(0, 8);
    for (const std::string& bad : {folder.file("none.vpt"), folder.output()})
        EXPECT_FALSE(project().loadProjectFromFile(toWx(bad))) << bad;
    EXPECT_EQ(project().totalNrPoints, 4000U);
    EXPECT_GT(update(overview), 0U);
    // Another one begins anew.
    patch(0, 9);
    project().selectedLevel = 0;
    EXPECT_TRUE(project().loadProjectFromFile(toWx(folder.output())));
    EXPECT_EQ(project().selectedLevel, 1U);
    EXPECT_TRUE(buffers().visibleNodes().empty());
    const TreeNode& root = model->levels.front().front();
    EXPECT_NEAR(set.dataMax().x - set.dataMin().x, 1.05 * (root.boxMax[0] - root.boxMin[0]), 1e-9);
}

TEST_F(ViewTest, CopesWithATreeWithoutNodesAndWithNone) {
    PcCoreProjectManager empty;
    for (const bool isLoaded : {false, true}) {
        if (isLoaded) {
            std::string bytes(143, '\0');
            bytes[0] = 9;
            bytes[127] = 54;
            writeBytes(folder.output(), bytes);
            ASSERT_TRUE(empty.loadProjectFromFile(toWx(folder.output())));
            ASSERT_TRUE(set.loadProjectFromFile(name()));
            EXPECT_EQ(update(overview), 0U);
            OdGePoint3d found;
            EXPECT_FALSE(pick(overview, {}, {50, 50, 50}, 9, found));
        }
        EXPECT_EQ(empty.getNrPointsInFrustumLOD(empty.viewFrustum(), 0), 0U);
        EXPECT_TRUE(empty.flatNodeSelection(empty.viewFrustum()).empty());
        EXPECT_TRUE(empty.dynamicNodeSelection(empty.viewFrustum()).empty());
        EXPECT_EQ(empty.totalNrPoints, 0U);
        EXPECT_EQ(empty.dataMin().x, 1e80);
    }
}

}  // namespace
}  // namespace vpc::test
