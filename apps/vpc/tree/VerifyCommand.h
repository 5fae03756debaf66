#pragma once

#include <string>

#include "vpc/common/Command.h"

namespace vpc {

/// `vpc verify`: checks a tree file from end to end.
class VerifyCommand : public Command {
public:
    explicit VerifyCommand(CLI::App& app);
    int Run() override;

private:
    std::string file_;
};

}  // namespace vpc
