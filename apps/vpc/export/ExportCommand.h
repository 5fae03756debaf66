#pragma once

#include <string>

#include "vpc/common/Command.h"
#include "vpc/common/CutOptions.h"
#include "vpc/common/LevelOption.h"
#include "vpc/export/ExportFormat.h"
#include "vpc/export/ExportOutput.h"

namespace vpc {

class ExportSource;
class PointTreeReader;

/// `vpc export`: writes the points of one level of a tree file as a scan.
class ExportCommand : public Command {
public:
    explicit ExportCommand(CLI::App& app);
    int Run() override;

private:
    ExportFormat RequireFormat() const;
    bool WritesToStandardOutput() const;
    /// Throws CommandError where the output would take the place of what it must not.
    void CheckOutput() const;
    /// Where the unit gets lost and is not the one that is taken where none is known.
    void WarnOfUnit() const;
    /// Throws CommandError where there are no points to write.
    void RequirePoints(const ExportSource& source, PointTreeReader& tree) const;
    void Write(ExportFormat format, ExportSource& source) const;
    void WriteScan(ExportFormat format, ExportSource& source, const ExportOutput& out) const;

    std::string file_;
    std::string output_;
    std::string formatText_;
    LevelOption level_;
    CutOptions cuts_;
    std::string colouredBy_;
    bool force_ = false;
    /// The unit's code among DrawingUnits.
    unsigned long long unit_ = 0;
};

}  // namespace vpc
