#pragma once

#include "Command.h"
#include "PrepareOptions.h"
#include "core/util/VpcDefinitions.h"

struct TreePrepareResult;

namespace vpc {

class PrepareChecks;
class ProgressDisplay;

/// `vpc prepare`: turns scans into one point tree file.
class PrepareCommand : public Command {
public:
    explicit PrepareCommand(CLI::App& app);
    int Run() override;

private:
    TreePrepareResult Prepare(ProgressDisplay& display) const;
    void CheckResult(const TreePrepareResult& result, const ProgressDisplay& display,
                     VpcDataFormat format) const;
    /// The first scan that claims points without values.
    std::string FirstIncomplete(VpcDataFormat format) const;
    void LogStart() const;
    void PrintSummary(const TreePrepareResult& result) const;

    PrepareOptions options_;
    std::string unitText_ = "6";  // metres
};

}  // namespace vpc
