#pragma once

#include <string>
#include <vector>

namespace vpc {

/// What has become of the scans: the end of a run, for people and for programs.
struct PrepareReport {
    /// The tree file, as the user names it.
    std::string output;
    unsigned long long points = 0;
    unsigned long long levels = 0;
    unsigned long long nodes = 0;
    unsigned long long bytes = 0;
    std::string unit;
    double seconds = 0.0;
    /// As people read it.
    std::string time;

    /// Counts what the finished file holds. Throws CommandError where it cannot be read back.
    static PrepareReport Of(const std::string& output);

    std::string ToText() const;
    /// One object on one line.
    /// \param warnings a line each
    /// \param scans    as the user names them; a warning is that of the scan which it names
    std::string ToJson(const std::vector<std::string>& warnings,
                       const std::vector<std::string>& scans) const;
};

}  // namespace vpc
