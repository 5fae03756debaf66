#pragma once

#include <string>
#include <vector>

#include "vpc/common/Command.h"

namespace vpc {

/// `vpc verify`: checks tree files from end to end.
class VerifyCommand : public Command {
public:
    explicit VerifyCommand(CLI::App& app);
    int Run() override;

private:
    std::vector<std::string> files_;
    bool json_ = false;
};

}  // namespace vpc
