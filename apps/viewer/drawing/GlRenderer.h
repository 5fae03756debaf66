#pragma once

#include <memory>
#include <string>

#include "viewer/drawing/PointRenderer.h"

namespace vpc::viewer {

/// Draws with OpenGL 3.3 into a framebuffer of its own, without a window. Each call makes its
/// context the calling thread's, which it stays until Release; whoever uses another one there makes
/// that current again.
///
/// No call fails where the driver is lost: pictures are empty then, and no memory is given.
class GlRenderer : public PointRenderer {
public:
    /// Null where there is no OpenGL 3.3.
    /// \param problem then gets the reason: a sentence
    static std::unique_ptr<GlRenderer> Create(std::string& problem);
    ~GlRenderer() override;

    /// Whether the processor does the drawing after all.
    bool IsSoftware() const;
    /// Whether the driver has given up: from then on pictures are empty. A new renderer may work.
    bool IsLost() const override;

    std::string Name() const override;
    std::span<PointVertex> OpenPoints(std::size_t count) override;
    void ClosePoints(std::size_t count, const glm::dvec3& origin, double spacing) override;
    std::size_t PointCount() const override;
    int LargestSide() const override;
    std::size_t BytesPerPixel() const override;
    void Begin(const ViewCamera& camera, const draw::ImageSize& size,
               const ViewStyle& style) override;
    void Draw(std::size_t first, std::size_t step) override;
    draw::Image Picture() override;
    std::optional<glm::dvec3> PlaceAt(const glm::ivec2& pixel) const override;
    void Release() override;

private:
    class Device;
    explicit GlRenderer(std::unique_ptr<Device> device);

    std::unique_ptr<Device> device_;
};

}  // namespace vpc::viewer
