#pragma once

#include <string>
#include <vector>

#include "core/util/VpcDefinitions.h"
#include "tree/construct/PcCorePointPrepare.h"
#include "vpc/common/Command.h"
#include "vpc/prepare/PrepareReport.h"
#include "vpc/prepare/ProgressDisplay.h"

namespace vpc {

struct PrepareFinding;
class ScanSet;

/// What the user asks of one preparing run; file names in the system's encoding.
struct PrepareOptions {
    /// Files, folders and lists ("@list.txt").
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
    std::string text = "auto";
    bool allowIncomplete = false;
    bool skipBad = false;
    bool quiet = false;
    std::string progress = "words";
    bool json = false;
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
    using Clock = std::chrono::steady_clock;

    ProgressDisplay::Style ProgressStyle() const;
    VpcTreeType TreeType() const;
    /// Throws CommandError for what would make the run fail, other than its scans, and that the
    /// user has not asked to ignore.
    void RequireChecks(const ScanSet& scans) const;
    /// Reads the texts to their ends, and leaves out the scans that the user allows to leave out.
    void SettleScans(ScanSet& scans, const std::string& workFolder, ProgressDisplay& display) const;
    /// Decides on the unit and says which one it is and why.
    void ChooseUnit(const ScanSet& scans, ProgressDisplay& display);
    TreePrepareResult Prepare(const ScanSet& scans, const std::string& workFolder,
                              ProgressDisplay& display) const;
    void CheckResult(const TreePrepareResult& result, const ScanSet& scans,
                     ProgressDisplay& display) const;
    /// Throws CommandInterrupted where the user has asked for it.
    void RequireNoInterrupt() const;
    /// The end of a sentence: that an older output has not been touched.
    std::string Unchanged() const;
    void LogStart(const ScanSet& scans) const;
    PrepareReport Report(const TreePrepareResult& result, Clock::time_point start) const;
    /// Prints and logs what has become of the scans.
    void Tell(const PrepareReport& report, const std::vector<std::string>& warnings,
              const std::vector<std::string>& scans) const;

    PrepareOptions options_;
    std::string unitText_ = "auto";
};

}  // namespace vpc
