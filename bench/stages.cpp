// Prepares a LAS scan as an octree of 10000 points a node (at most 12 levels deep) and prints on
// one line the seconds that each stage took: measuring the scan, adding the points, building the
// levels, writing the file.
//
// Usage: vpc_stages SCAN.las FOLDER. Removes its files.

#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>

#include "tree/construct/PcCorePointPrepare.h"
#include "tree/construct/PrepareObserver.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned long long maxPointsPerNode = 10000;
constexpr unsigned long long maxLevel = 12;

/// Counts the time between two reports to the stage of the later one.
class StageClock : public PrepareObserver {
public:
    bool onProgress(const PrepareProgress& progress) override {
        // A stage may tell of its beginning: what was before belongs to the stage before.
        if (progress.pointsDone != 0) stage_ = progress.stage;
        charge();
        stage_ = progress.stage;
        return true;
    }
    bool onScansMeasured(const ScanSummary&, const wxString&) override {
        charge();
        return true;
    }
    /// What comes after the last report belongs to the last stage.
    std::array<double, 4> finish() {
        charge();
        return seconds_;
    }

private:
    void charge() {
        const Clock::time_point now = Clock::now();
        seconds_.at(static_cast<std::size_t>(stage_)) +=
            std::chrono::duration<double>(now - last_).count();
        last_ = now;
    }

    PrepareStage stage_ = PrepareStage::MeasureScans;
    Clock::time_point last_ = Clock::now();
    std::array<double, 4> seconds_{};
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: vpc_stages SCAN.las FOLDER\n");
        return 2;
    }
    const std::string folder = std::string(argv[2]) + "/";
    const std::string output = folder + "stages.vpt";
    StageClock clock;
    const TreePrepareResult result = PcCorePointPrepare::preparePointData(
        0, wxString::FromUTF8(folder), {wxString::FromUTF8(argv[1])}, wxString::FromUTF8(output),
        Tree_Octree, maxPointsPerNode, maxLevel, clock);
    const std::array<double, 4> seconds = clock.finish();
    std::error_code ignored;
    std::filesystem::remove(output, ignored);
    if (!result.success) {
        std::fprintf(stderr, "vpc_stages: %s\n", result.message.utf8_string().c_str());
        return 1;
    }
    for (const double stage : seconds) std::printf("%.6f ", stage);
    std::printf("\n");
    return 0;
}
