#pragma once

#include <string>

#include "vpc/LevelTotals.h"
#include "vpc/common/Command.h"

class VpcDiskTreeQuerier;

namespace vpc {

/// `vpc info`: says what is in a tree file, from its header and node records alone.
class InfoCommand : public Command {
public:
    explicit InfoCommand(CLI::App& app);
    int Run() override;

private:
    void PrintText(VpcDiskTreeQuerier& querier) const;
    void PrintJson(VpcDiskTreeQuerier& querier) const;

    std::string file_;
    bool json_ = false;
    bool nodes_ = false;
};

}  // namespace vpc
