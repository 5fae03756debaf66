#pragma once

#include <map>
#include <string>

namespace vpc {

/// Prints the faults found in a file on standard output as they turn up.
class Findings {
public:
    /// Adds a finding. Beyond a hundred of one kind the rest is only counted: one wrong size can
    /// make every position behind it wrong.
    void Add(const std::string& kind, const std::string& text);
    bool Any() const { return !counts_.empty(); }
    /// Prints what was left out, or that there was nothing to find.
    void PrintSummary() const;

private:
    std::map<std::string, unsigned long long> counts_;
};

}  // namespace vpc
