#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "vpc/view/Camera.h"

namespace vpc {

/// A picture of points as a host draws them: every point a square of as many pixels as its size
/// says, the nearer one in front.
class PointImage {
public:
    using Colour = std::array<std::uint8_t, 3>;

    /// Neither black nor white nor grey, as points without a colour of their own may be.
    static constexpr Colour background = {44, 62, 88};
    /// Larger points are drawn with this size, as graphics hardware has a limit, too.
    static constexpr double largestSize = 64.0;

    /// Shows all of the camera's field, and more beside it where the picture has another shape.
    PointImage(const ViewCamera& camera, const Viewport& size);

    void Draw(const VpcVector3D& p, const Colour& colour, double size);
    /// The picture as the bytes of a PNG file. Throws std::runtime_error where that fails.
    std::vector<char> Png() const;

private:
    void Fill(double x, double y, double side, float depth, const Colour& colour);

    CameraAxes axes_;
    Viewport size_;
    bool perspective_;
    double targetDistance_;
    /// Pixels per world unit at the target's distance.
    double scale_;
    std::vector<float> depths_;
    std::vector<Colour> pixels_;
};

}  // namespace vpc
