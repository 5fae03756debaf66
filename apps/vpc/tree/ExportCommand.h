#pragma once

#include <string>
#include <vector>

#include "core/geometry/VpcPoint3D.h"
#include "vpc/common/Command.h"

namespace vpc {

/// `vpc export`: writes the points of one level of a tree file as a scan.
class ExportCommand : public Command {
public:
    explicit ExportCommand(CLI::App& app);
    int Run() override;

private:
    enum class Format { Pts, Ptx, Ply };

    Format RequireFormat() const;
    std::vector<VpcPoint3D> ReadPoints() const;
    void Write(Format format, std::vector<VpcPoint3D> points) const;

    std::string file_;
    std::string output_;
    std::string levelText_;
    std::string colouredBy_;
};

}  // namespace vpc
