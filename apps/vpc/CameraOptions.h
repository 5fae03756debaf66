#pragma once

#include <array>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "ViewCamera.h"

namespace vpc {

/// The options that describe a camera. What is not given is chosen so that the whole cloud is
/// seen obliquely from above and fills the picture.
class CameraOptions {
public:
    /// The corners of a box around the cloud, in world coordinates.
    using Corners = std::array<VpcVector3D, 8>;

    explicit CameraOptions(CLI::App& options);

    /// Reads what was given. Throws CommandUsageError where that is no camera.
    void Read();
    /// The viewport where none is given; before Choose.
    void SetViewport(const Viewport& viewport) {
        if (viewportText_.empty()) camera_.viewport = viewport;
    }
    const Viewport& GetViewport() const { return camera_.viewport; }
    ViewCamera Choose(const Corners& corners) const;

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
