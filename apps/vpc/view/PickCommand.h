#pragma once

#include <string>

#include "view/PcCoreProjectManager.h"
#include "vpc/common/Command.h"
#include "vpc/view/Camera.h"
#include "vpc/view/ShownOptions.h"

namespace vpc {

struct PickedPoint;

/// `vpc pick`: finds the point that a click into a view would pick.
class PickCommand : public Command {
public:
    explicit PickCommand(CLI::App& app);
    int Run() override;

private:
    /// Throws CommandUsageError where the options name no click.
    void CheckClick() const;
    /// A point of the line from the eye through the cursor.
    VpcVector3D ClickedAt(const ViewCamera& camera) const;
    void Print(const PickedPoint& found, double distance) const;

    CameraOptions camera_;
    ShownOptions shown_;
    std::string file_;
    std::string atText_;
    std::string pixelText_;
    std::string sizeText_;
    int box_ = PcCoreProjectManager::snapBoxPixels;
    bool json_ = false;
    /// The picture's.
    Viewport size_;
};

}  // namespace vpc
