#pragma once

#include <memory>

#include "viewer/drawing/PointRenderer.h"

namespace vpc::viewer {

/// Draws on the processor, in the thread that calls it.
///
/// As long as points are missing from a picture with automatic sizes, each is as large as the
/// spacing tells; the finished picture looks for the size that closes its surface.
class CpuRenderer : public PointRenderer {
public:
    CpuRenderer();
    ~CpuRenderer() override;

    std::string Name() const override;
    std::span<PointVertex> OpenPoints(std::size_t count) override;
    void ClosePoints(std::size_t count, const glm::dvec3& origin, double spacing) override;
    std::size_t PointCount() const override;
    std::size_t BytesPerPixel() const override;
    void Begin(const ViewCamera& camera, const draw::ImageSize& size,
               const ViewStyle& style) override;
    void Draw(std::size_t first, std::size_t step) override;
    draw::Image Picture() override;
    std::optional<glm::dvec3> PlaceAt(const glm::ivec2& pixel) const override;

private:
    class Points;
    class Frame;

    std::unique_ptr<Points> points_;
    std::unique_ptr<Frame> frame_;
};

}  // namespace vpc::viewer
