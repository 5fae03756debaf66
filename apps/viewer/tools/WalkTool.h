#pragma once

#include "viewer/camera/CameraMotion.h"
#include "viewer/tools/Tool.h"

namespace vpc::viewer {

/// Walks through the inside of a building: keys walk, a left drag looks around.
class WalkTool : public Tool {
public:
    /// Shows the view in perspective where it is parallel.
    explicit WalkTool(ToolHost& host);

    bool OnPress(const MouseInput& input) override;
    bool OnDrag(const MouseInput& input) override;
    bool OnRelease(const MouseInput& input) override;
    void OnCancel() override;
    bool OnKey(ToolKey key) override;

    /// A step of a key, in paces; fractions where the window divides a held key's time.
    void Walk(double ahead, double right, double up);
    /// Looks around by an angle in radians, to the left and upwards.
    void Look(double yaw, double pitch);
    /// Longer or shorter paces.
    void ChangePace(double factor);
    /// In drawing units.
    double Pace() const { return pace_; }
    /// Keeps the view that steps led to; called when the camera has come to rest.
    void Rest();

private:
    void Step(const WalkStep& step);
    ViewCamera LookedTo(const glm::ivec2& place) const;

    ToolHost& host_;
    double pace_ = 1.0;
    bool looking_ = false;
    bool moved_ = false;
    glm::ivec2 press_{0, 0};
    glm::ivec2 last_{0, 0};
    ViewCamera start_;  // at the press, or after the last step since
};

}  // namespace vpc::viewer
