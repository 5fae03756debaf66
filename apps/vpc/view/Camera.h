#pragma once

#include <array>
#include <optional>
#include <string>

#include "core/geometry/VpcVector3D.h"

namespace CLI {
class App;
}

namespace vpc {

/// The size of a window or picture in pixels.
struct Viewport {
    /// More than any screen has; keeps the memory for a picture within reason.
    static constexpr int largestSide = 16384;

    int width = 1280;
    int height = 800;

    /// \param text "1280,800" or "1280x800". Throws CommandUsageError, which names `option`, for
    /// anything but two whole numbers from 1 to largestSide.
    static Viewport Parse(const std::string& text, const std::string& option);
};

/// A camera as a host describes it, in world coordinates.
struct ViewCamera {
    VpcVector3D eye;
    VpcVector3D target;
    VpcVector3D up{0, 0, 1};
    /// What is seen at the target's distance, in world units.
    double fieldWidth = 0.0;
    double fieldHeight = 0.0;
    Viewport viewport;
    bool perspective = true;
};

/// A camera's own frame, with the eye as its origin.
class CameraAxes {
public:
    /// Where a point is seen: how far to the right of the eye and above it, and how far ahead.
    struct Place {
        double right = 0.0;
        double above = 0.0;
        double depth = 0.0;
    };

    explicit CameraAxes(const ViewCamera& camera);

    Place Of(const VpcVector3D& p) const;
    const VpcVector3D& Right() const { return right_; }
    const VpcVector3D& Up() const { return up_; }
    const VpcVector3D& Forward() const { return forward_; }

    /// The part of `up` that is at right angles to `direction`, of length 1; where there is none,
    /// that of the axis y, or of x.
    static VpcVector3D UprightTo(const VpcVector3D& direction, const VpcVector3D& up);

private:
    VpcVector3D eye_;
    VpcVector3D forward_;
    VpcVector3D up_;
    VpcVector3D right_;
};

/// The options that describe a camera. What is not given is chosen so that the whole cloud is
/// seen obliquely from above and fills the picture.
class CameraOptions {
public:
    /// The corners of a box around the cloud, in world coordinates.
    using Corners = std::array<VpcVector3D, 8>;

    explicit CameraOptions(CLI::App& options);

    /// Reads what was given. Throws CommandUsageError where the options describe no camera.
    void Read();
    /// The viewport where none is given; before Choose.
    void SetViewport(const Viewport& viewport) {
        if (viewportText_.empty()) camera_.viewport = viewport;
    }
    const Viewport& GetViewport() const { return camera_.viewport; }
    ViewCamera Choose(const Corners& corners) const;
    /// Whether every part of the camera is given, so that Choose does not depend on the corners.
    bool IsComplete() const { return eye_ && target_ && !fieldText_.empty(); }
    /// A camera that sees everything between the corners, from above and without perspective.
    static ViewCamera Seeing(const Corners& corners);

private:
    void ChooseEyeAndTarget(ViewCamera& camera, const Corners& corners) const;
    void ChooseUp(ViewCamera& camera) const;
    void ChooseField(ViewCamera& camera, const Corners& corners) const;
    void Centre(ViewCamera& camera, const Corners& corners) const;

    std::string eyeText_;
    std::string targetText_;
    std::string upText_;
    std::string fieldText_;
    std::string viewportText_;
    bool perspective_ = false;
    bool parallel_ = false;
    std::optional<VpcVector3D> eye_;
    std::optional<VpcVector3D> target_;
    std::optional<VpcVector3D> up_;
    ViewCamera camera_;
};

}  // namespace vpc
