#pragma once

#include <string>

#include "tree/file/PointTreeReader.h"
#include "vpc/common/Command.h"

namespace vpc {

/// `vpc info`: says what is in a tree file, from its header, its node records and as few points as
/// the bounds need. Only statistics take a pass over all points.
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
    bool statistics_ = false;
};

}  // namespace vpc
