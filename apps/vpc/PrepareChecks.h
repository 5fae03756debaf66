#pragma once

#include <string>

#include "PrepareOptions.h"
#include "core/util/VpcDefinitions.h"

namespace vpc {

/// Checks, before a run begins, what the library leaves to its callers, so that a long run does
/// not fail at its end for a reason that was there at its start.
class PrepareChecks {
public:
    /// `options` must outlive the checks.
    explicit PrepareChecks(const PrepareOptions& options) : options_(options) {}

    /// Throws CommandError for the first thing that stands in the way.
    void Run();
    /// Points that the scans hold, as far as sizes tell: exact for LAS. Known after Run.
    unsigned long long EstimatedPoints() const { return points_; }
    VpcDataFormat Format() const { return format_; }

private:
    void CheckOutput() const;
    void CheckScan(const std::string& scan);
    void CheckFormat(const std::string& scan);
    void CheckLog() const;
    void CheckFolders() const;
    void CheckRoom() const;

    const PrepareOptions& options_;
    VpcDataFormat format_ = DataFormat_Unknown;
    unsigned long long points_ = 0;
};

/// The folder that a file is in, "." where its name tells none.
std::string folderOf(const std::string& file);

}  // namespace vpc
