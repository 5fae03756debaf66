// Workload: one view of 5,000,000 points is filled, recoloured and picked from. The benchmark makes
// the scan in the temporary folder (LAS, format 3, points spread over a rolling ground of 1000 by
// 1000 metres) and prepares it there as an octree with at most 10,000 points a node. It removes
// both at its end; the tree file is in the system's cache while it is read. The budget is 5,000,002
// points and the camera sees the whole cloud, so that every update reads every point of the deepest
// level.
//
// The floors do the least that could be done, over plain arrays. Update: read the same byte ranges,
// each with one call, and copy 36 bytes a point into three arrays. Recolouring: one pass for the
// matrix and the range, one for the ramp (Spectrum) of each point. A pick looks for the point under
// a box of 5 pixels, each time at another place of the picture. Drawing makes a picture of 1600 by
// 1000 pixels of all points in their own colours, sized to close the surface and shaded.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "ViewedProject.h"
#include "draw/DepthBuffer.h"
#include "draw/EyeDomeShading.h"
#include "draw/Paint.h"
#include "draw/Surface.h"
#include "tree/disk/VpcDiskNode.h"
#include "tree/disk/VpcDiskTree.h"
#include "view/PcCoreProjectManager.h"

namespace {

namespace draw = vpc::draw;
using namespace viewed;

constexpr std::size_t pointRecord = 54;

// --- Update --------------------------------------------------------------------------------------

void setRate(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(points));
}

void BM_Update(benchmark::State& state) {
    Project& view = project();
    for (auto _ : state)
        if (view.update(GiPc_Stylization_NONE) != points) state.SkipWithError("not all points");
    setRate(state);
}

void BM_UpdateFloor(benchmark::State& state) {
    struct Range {
        off_t position;
        std::size_t count;
    };
    std::vector<Range> ranges;
    for (const VpcDiskNode* const node : project().manager.tree()->GetLevels().back())
        ranges.push_back(
            {static_cast<off_t>(node->pointsOffset), static_cast<std::size_t>(node->nrPoints)});
    const auto largest = std::max_element(ranges.begin(), ranges.end(),
                                          [](auto& a, auto& b) { return a.count < b.count; });
    std::vector<char> block(largest->count * pointRecord);
    std::vector<double> coordinates(3 * points);
    std::vector<std::uint32_t> colours(points);
    std::vector<double> sizes(points);
    const int file = open(project().tree().c_str(), O_RDONLY);
    for (auto _ : state) {
        std::size_t slot = 0;
        for (const Range& range : ranges) {
            const std::size_t bytes = range.count * pointRecord;
            if (pread(file, block.data(), bytes, range.position) != static_cast<ssize_t>(bytes))
                state.SkipWithError("cannot read");
            for (const char* record = block.data(); record != block.data() + bytes;
                 record += pointRecord, ++slot) {
                std::memcpy(&coordinates[3 * slot], record, 24);
                std::memcpy(&colours[slot], record + 24, 4);
                std::memcpy(&sizes[slot], record + 38, 8);
            }
        }
        benchmark::ClobberMemory();
    }
    close(file);
    setRate(state);
}

// --- Recolouring ---------------------------------------------------------------------------------

void recolour(benchmark::State& state, GiPcStylizationType type) {
    Project& view = project();
    view.update(GiPc_Stylization_NONE);
    for (auto _ : state)
        view.manager.visibleNodeManager().updateColormapForPointsInBuffer(
            view.matrix, GiPc_ColorScheme_Spectrum, type);
    setRate(state);
}

void BM_RecolourElevation(benchmark::State& state) {
    recolour(state, GiPc_Stylization_ELEVATION);
}

void BM_RecolourIntensity(benchmark::State& state) {
    recolour(state, GiPc_Stylization_INTENSITY);
}

/// What the buffers hold, as plain arrays.
struct PlainArrays {
    struct Xyz {
        double x, y, z;
    };
    std::vector<Xyz> coordinates;
    std::vector<std::uint32_t> colours;
    std::vector<double> intensities;

    PlainArrays() : coordinates(points), colours(points), intensities(points) {
        project().update(GiPc_Stylization_NONE);
        const PcCoreVisibleNodeManager& buffers = project().manager.visibleNodeManager();
        std::memcpy(coordinates.data(), buffers.coordinates(), points * sizeof(Xyz));
        std::memcpy(colours.data(), buffers.colours(), points * sizeof(std::uint32_t));
    }
    void move(std::size_t i, const OdGeMatrix3d& m) {
        const Xyz p = coordinates[i];
        coordinates[i] = {m[0][0] * p.x + m[0][1] * p.y + m[0][2] * p.z + m[0][3],
                          m[1][0] * p.x + m[1][1] * p.y + m[1][2] * p.z + m[1][3],
                          m[2][0] * p.x + m[2][1] * p.y + m[2][2] * p.z + m[2][3]};
    }
    void paint(std::size_t i, double value, double min, double max) {
        const double t = (value - min) * 255 / (max - min);
        const auto channel = [t](double centre) {
            const double hump = 1.5 - std::fabs((t - centre) * 0.015625);
            return static_cast<std::uint32_t>(std::min(std::max(0.0, hump), 1.0) * 255);
        };
        colours[i] =
            (colours[i] & 0xFF000000U) | channel(192) << 16U | channel(128) << 8U | channel(64);
    }
};

void BM_RecolourElevationFloor(benchmark::State& state) {
    PlainArrays arrays;
    const OdGeMatrix3d matrix = project().matrix;
    for (auto _ : state) {
        double min = 1e300, max = -1e300;
        for (std::size_t i = 0; i < points; ++i) {
            arrays.move(i, matrix);
            min = std::min(min, arrays.coordinates[i].z);
            max = std::max(max, arrays.coordinates[i].z);
        }
        for (std::size_t i = 0; i < points; ++i) arrays.paint(i, arrays.coordinates[i].z, min, max);
        benchmark::ClobberMemory();
    }
    setRate(state);
}

void BM_RecolourIntensityFloor(benchmark::State& state) {
    PlainArrays arrays;
    const OdGeMatrix3d matrix = project().matrix;
    for (auto _ : state) {
        double min = 1e300, max = -1e300;
        for (std::size_t i = 0; i < points; ++i) {
            const std::uint32_t c = arrays.colours[i];
            const double value =
                0.2125 * (c >> 16U & 0xFFU) + 0.7154 * (c >> 8U & 0xFFU) + 0.0721 * (c & 0xFFU);
            arrays.intensities[i] = value;
            arrays.move(i, matrix);
            min = std::min(min, value);
            max = std::max(max, value);
        }
        for (std::size_t i = 0; i < points; ++i) arrays.paint(i, arrays.intensities[i], min, max);
        benchmark::ClobberMemory();
    }
    setRate(state);
}

// --- Picking -------------------------------------------------------------------------------------

void BM_Pick(benchmark::State& state) {
    Project& view = project();
    view.update(GiPc_Stylization_NONE);
    std::int64_t found = 0;
    int i = 0;
    for (auto _ : state) {
        OdGePoint3d hit;
        const OdGePoint3d at(300 + i * 37 % 600 - 300, 600 + i * 53 % 600 - 300, 0);
        found += view.pick(at, hit) ? 1 : 0;
        ++i;
    }
    state.counters["found"] = static_cast<double>(found) / static_cast<double>(state.iterations());
}

// --- Drawing -------------------------------------------------------------------------------------

draw::Projection pictureOf(const Project& view) {
    const OdGeVector3d line = view.target - view.camera;
    const double distance = std::sqrt(line.x * line.x + line.y * line.y + line.z * line.z);
    draw::Camera camera;
    camera.eye = {view.camera.x, view.camera.y, view.camera.z};
    camera.ahead = {line.x / distance, line.y / distance, line.z / distance};
    camera.right = {1, 0, 0};
    camera.up = {0, -camera.ahead.z, camera.ahead.y};
    camera.targetDistance = distance;
    camera.fieldWidth = camera.fieldHeight = 1600;
    return {camera, {1600, 1000}};
}

void BM_Draw(benchmark::State& state) {
    Project& view = project();
    view.update(GiPc_Stylization_NONE);
    const PcCoreVisibleNodeManager& buffers = view.manager.visibleNodeManager();
    const draw::Projection projection = pictureOf(view);
    for (auto _ : state) {
        draw::DepthBuffer depths(projection.Size());
        depths.Add(projection, &buffers.coordinates()->x, points, 0);
        const draw::Surface surface(depths, projection, {});
        draw::Image image(projection.Size(), {});
        draw::paint(image, surface, draw::eyeDomeShading(surface, projection),
                    [colours = buffers.colours()](std::size_t point) {
                        const OdCmEntityColor& colour = colours[point];
                        return draw::Colour{colour.red(), colour.green(), colour.blue()};
                    });
        benchmark::DoNotOptimize(image.Data());
    }
    setRate(state);
}

BENCHMARK(BM_Draw)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Update)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_UpdateFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RecolourElevation)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RecolourElevationFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RecolourIntensity)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RecolourIntensityFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Pick)->Unit(benchmark::kMillisecond);

}  // namespace
