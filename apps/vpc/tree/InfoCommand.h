#pragma once

#include <string>

#include "tree/file/PointTreeReader.h"
#include "vpc/common/Command.h"

namespace vpc {

/// `vpc info`: says what is in a tree file, from its header and node records alone.
class InfoCommand : public Command {
public:
    explicit InfoCommand(CLI::App& app);
    int Run() override;

private:
    void PrintText(PointTreeReader& tree) const;
    void PrintJson(PointTreeReader& tree) const;

    std::string file_;
    bool json_ = false;
    bool nodes_ = false;
};

}  // namespace vpc
