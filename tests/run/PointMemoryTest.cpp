#include "support/PrepareRun.h"

namespace vpc::test {

namespace {

class BuildObserver : public PrepareObserver {
public:
    bool onProgress(const PrepareProgress& progress) override {
        if (progress.stage != PrepareStage::BuildLevels) return true;
        reports.push_back(progress);
        return goesOn || progress.pointsDone == 0;
    }
    bool goesOn = true;
    std::vector<PrepareProgress> reports;
};

}  // namespace

// What memory does not let a run sort at once it sorts later, and tells so.
TEST(PointMemory, ChangesWhenPointsAreSortedAndNothingElse) {
    const PrepareFolder folder;
    constexpr Word points = 100000, littleMemory = 500000;
    writeLas(folder.file("a.las"), {}, makeCloud({CloudShape::Uniform, points}));
    const auto run = [&](BuildObserver& observer, Word memory) {
        return PcCorePointPrepare::preparePointData(
            6, toWx(folder.work()), {toWx(folder.file("a.las"))}, toWx(folder.output()),
            Tree_Octree, 1000, 10, observer, memory);
    };
    std::string result;
    for (const Word memory : {PcCorePointPrepare::defaultPointMemory, littleMemory, 0ULL}) {
        SCOPED_TRACE(memory);
        BuildObserver observer;
        EXPECT_TRUE(run(observer, memory).success);
        ASSERT_FALSE(observer.reports.empty());
        const PrepareProgress& last = observer.reports.back();
        EXPECT_EQ(last.pointsDone, last.pointsInAll);
        EXPECT_LE(last.pointsInAll, points);
        EXPECT_EQ(last.pointsInAll != 0, memory == littleMemory);
        if (result.empty()) result = readBytes(folder.output());
        EXPECT_TRUE(readBytes(folder.output()) == result);
    }
    BuildObserver stopping;
    stopping.goesOn = false;
    EXPECT_EQ(run(stopping, littleMemory).message, "Point cloud preprocessing was cancelled");
    ASSERT_FALSE(stopping.reports.empty());
    EXPECT_LT(stopping.reports.back().pointsDone, stopping.reports.back().pointsInAll);
    EXPECT_TRUE(folder.holdsOnly({"a.las", "t.vpt"}));
}

}  // namespace vpc::test
