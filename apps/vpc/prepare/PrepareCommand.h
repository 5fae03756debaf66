#pragma once

#include <string>
#include <vector>

#include "core/util/VpcDefinitions.h"
#include "tree/construct/PcCorePointPrepare.h"
#include "vpc/common/Command.h"

namespace vpc {

class PrepareChecks;
struct PrepareFinding;
class ProgressDisplay;

/// What the user asks of one preparing run; file names in the system's encoding.
struct PrepareOptions {
    std::vector<std::string> scans;
    std::string output;
    std::string tree = "octree";
    unsigned long long maxPoints = 10000;
    unsigned long long maxLevel = 12;
    unsigned long long unit = 0;
    /// Bytes of points to keep in memory.
    unsigned long long memory = PcCorePointPrepare::defaultPointMemory;
    std::string log;
    /// The folder for temporary files; empty stands for the output's.
    std::string work;
    bool allowIncomplete = false;
    bool quiet = false;
    bool force = false;
};

/// `vpc prepare`: turns scans into one point tree file.
class PrepareCommand : public Command {
public:
    explicit PrepareCommand(CLI::App& app);
    int Run() override;

private:
    /// The folder in which the run's own folder for temporary files is made.
    std::string WorkParent() const;
    VpcTreeType TreeType() const;
    PrepareChecks Checks() const;
    /// Throws CommandError for the first finding that the user has not asked to ignore.
    void Require(const std::vector<PrepareFinding>& findings) const;
    TreePrepareResult Prepare(ProgressDisplay& display) const;
    void CheckResult(const TreePrepareResult& result, ProgressDisplay& display,
                     VpcDataFormat format) const;
    /// The first scan that claims points without values.
    std::string FirstIncomplete(VpcDataFormat format) const;
    void LogStart() const;
    void PrintSummary(const TreePrepareResult& result) const;

    PrepareOptions options_;
    std::string unitText_ = "auto";
};

}  // namespace vpc
