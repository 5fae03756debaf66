#include "viewer/drawing/RendererChoice.h"

#include "viewer/drawing/CpuRenderer.h"
#include "viewer/drawing/GlRenderer.h"

namespace vpc::viewer {

std::unique_ptr<PointRenderer> makeRenderer(RendererChoice choice, std::string& sentence) {
    sentence.clear();
    if (choice == RendererChoice::Cpu) return std::make_unique<CpuRenderer>();
    std::unique_ptr<GlRenderer> renderer = GlRenderer::Create(sentence);
    const bool isWanted =
        renderer != nullptr && (choice == RendererChoice::Gl || !renderer->IsSoftware());
    if (isWanted) return renderer;
    return std::make_unique<CpuRenderer>();
}

}  // namespace vpc::viewer
