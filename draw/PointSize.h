#pragma once

#include <algorithm>
#include <optional>

#include "draw/DepthBuffer.h"
#include "draw/Projection.h"

namespace vpc::draw {

/// How large points are drawn, and in which shape.
struct PointSize {
    static constexpr double largestDiameter = 2.0 * DepthBuffer::margin;
    /// Smaller points are as large as a pixel.
    static constexpr float smallestRadius = 0.5F;
    static constexpr float largestRadius = static_cast<float>(DepthBuffer::margin);
    /// Points fall back towards their rim like a bowl turned over, so that of two neighbours on one
    /// surface each shows the half that is nearer to it. At the rim a disc has fallen back by its
    /// radius times this.
    static constexpr float rimDepth = 1.5F;

    /// 1 to largestDiameter in pixels, or above 0 in the world; nothing where each point has the
    /// size that closes the surface that it lies on.
    std::optional<double> diameter;
    /// In units of the world, so that near points are larger.
    bool inWorld = false;
    /// A square in place of a disc.
    bool square = false;

    /// In pixels, of a point at a depth; only where there is a diameter.
    float Radius(const Projection& projection, float depth) const {
        const double radius =
            *diameter / 2.0 / (inWorld ? projection.PixelSide(static_cast<double>(depth)) : 1.0);
        return std::clamp(static_cast<float>(radius), smallestRadius, largestRadius);
    }
};

}  // namespace vpc::draw
