#pragma once

#include <string>

#include "CameraOptions.h"
#include "Command.h"
#include "view/PcCoreProjectManager.h"

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
