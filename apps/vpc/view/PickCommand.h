#pragma once

#include <string>

#include "view/PcCoreProjectManager.h"
#include "vpc/common/Command.h"
#include "vpc/view/Camera.h"

namespace vpc {

/// `vpc pick`: finds the point that a click into a view would pick.
class PickCommand : public Command {
public:
    explicit PickCommand(CLI::App& app);
    int Run() override;

private:
    CameraOptions camera_;
    std::string file_;
    std::string atText_;
    int box_ = PcCoreProjectManager::snapBoxPixels;
};

}  // namespace vpc
