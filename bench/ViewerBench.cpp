// Workload: the viewer shows 5,000,000 points (bench/ViewedProject.h) in a picture of 1600 by 1000
// pixels. The update is the one that the plug-in does; handing over is what the viewer's engine
// does after it, points to vertices in the renderer's memory; the finished picture is all of it,
// from the changed camera on, sized to close the surface and shaded. An orbit frame draws the first
// slice of twenty and makes a picture of it; its counter tells the bytes that it allocates, in
// bytes of the points, so that a copy of them would show as 1 or more.
//
// What OpenGL adds beside the update and the card's own drawing is the handing over into mapped
// memory, a picture's way back without anything drawn in it, and the overlay.

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>

#include <benchmark/benchmark.h>
#include <glm/geometric.hpp>

#include "ViewedProject.h"
#include "view/PcCoreVisibleNodeManager.h"
#include "viewer/drawing/CpuRenderer.h"
#include "viewer/drawing/GlRenderer.h"
#include "viewer/drawing/Overlay.h"

namespace {

std::atomic<unsigned long long> allocatedBytes{0};

void* allocate(std::size_t bytes) {
    allocatedBytes += bytes;
    if (void* const memory = std::malloc(bytes)) return memory;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t bytes) {
    return allocate(bytes);
}
void* operator new[](std::size_t bytes) {
    return allocate(bytes);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

namespace draw = vpc::draw;
using namespace vpc::viewer;
using namespace viewed;

constexpr draw::ImageSize pictureSize{1600, 1000};
constexpr std::size_t slices = 20;

ViewCamera cameraOf(const Project& view) {
    ViewCamera camera;
    camera.eye = {view.camera.x, view.camera.y, view.camera.z};
    camera.target = {view.target.x, view.target.y, view.target.z};
    const glm::dvec3 ahead = camera.Ahead();
    camera.up = {0.0, -ahead.z, ahead.y};
    camera.fieldHeight = 1000.0;
    return camera;
}

void update(benchmark::State& state) {
    if (project().update(GiPc_Stylization_NONE) != points) state.SkipWithError("not all points");
}

void handOver(PointRenderer& renderer) {
    const PcCoreVisibleNodeManager& buffers = project().manager.visibleNodeManager();
    const OdGePoint3d* const places = buffers.coordinates();
    const OdCmEntityColor* const colours = buffers.colours();
    const glm::dvec3 origin = cameraOf(project()).target;
    const std::span<PointVertex> memory = renderer.OpenPoints(points);
    for (std::size_t i = 0; i < memory.size(); ++i) {
        const std::uint32_t red = colours[i].red(), green = colours[i].green();
        memory[i] = {static_cast<float>(places[i].x - origin.x),
                     static_cast<float>(places[i].y - origin.y),
                     static_cast<float>(places[i].z - origin.z),
                     red << 16U | green << 8U | colours[i].blue()};
    }
    renderer.ClosePoints(memory.size(), origin, 0.5);
}

void layOver(draw::Image& image) {
    Overlay overlay;
    overlay.unit = "m";
    overlay.legends = {{"Elevation (m)", {draw::ColourRamp::Table{}, {-40.0, 40.0}}}};
    overlay.LayOver(image, cameraOf(project()), ViewStyle{}, pictureSize);
    benchmark::DoNotOptimize(image.Data());
}

void BM_ViewerUpdate(benchmark::State& state) {
    update(state);
    for (auto _ : state) update(state);
}

void BM_ViewerHandOver(benchmark::State& state) {
    CpuRenderer renderer;
    update(state);
    for (auto _ : state) handOver(renderer);
}

void BM_ViewerFinishedPicture(benchmark::State& state) {
    CpuRenderer renderer;
    update(state);
    for (auto _ : state) {
        update(state);
        handOver(renderer);
        renderer.Begin(cameraOf(project()), pictureSize, ViewStyle{});
        for (std::size_t i = 0; i < slices; ++i) renderer.Draw(i, slices);
        draw::Image image = renderer.Picture();
        layOver(image);
    }
}

void BM_ViewerDraw(benchmark::State& state) {
    CpuRenderer renderer;
    update(state);
    handOver(renderer);
    for (auto _ : state) {
        renderer.Begin(cameraOf(project()), pictureSize, ViewStyle{});
        renderer.Draw(0, 1);
    }
}

void BM_ViewerOrbitFrame(benchmark::State& state) {
    CpuRenderer renderer;
    update(state);
    handOver(renderer);
    ViewCamera camera = cameraOf(project());
    renderer.Begin(camera, pictureSize, ViewStyle{});
    renderer.Picture();
    const unsigned long long before = allocatedBytes;
    for (auto _ : state) {
        camera.eye.x += 1.0;
        renderer.Begin(camera, pictureSize, ViewStyle{});
        renderer.Draw(0, slices);
        draw::Image image = renderer.Picture();
        layOver(image);
    }
    const auto bytes = static_cast<double>(allocatedBytes - before);
    state.counters["allocated_in_points"] = bytes / static_cast<double>(state.iterations()) /
                                            static_cast<double>(points * sizeof(PointVertex));
}

void BM_ViewerBesideGl(benchmark::State& state) {
    std::string problem;
    const std::unique_ptr<GlRenderer> renderer = GlRenderer::Create(problem);
    if (renderer == nullptr) return state.SkipWithError(problem.c_str());
    update(state);
    ViewStyle style;
    style.shaded = false;
    for (auto _ : state) {
        handOver(*renderer);
        renderer->Begin(cameraOf(project()), pictureSize, style);
        draw::Image image = renderer->Picture();
        layOver(image);
    }
}

BENCHMARK(BM_ViewerUpdate)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ViewerHandOver)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ViewerFinishedPicture)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ViewerDraw)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ViewerOrbitFrame)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ViewerBesideGl)->Unit(benchmark::kMillisecond);

}  // namespace
