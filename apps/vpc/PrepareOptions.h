#pragma once

#include <string>
#include <vector>

namespace vpc {

/// What the user asks of one preparing run; file names in the system's encoding.
struct PrepareOptions {
    std::vector<std::string> scans;
    std::string output;
    std::string tree = "octree";
    unsigned long long maxPoints = 10000;
    unsigned long long maxLevel = 12;
    unsigned long long unit = 0;
    std::string log;
    /// The folder for temporary files; empty stands for the output's.
    std::string work;
    bool allowIncomplete = false;
    bool quiet = false;
    bool force = false;
};

}  // namespace vpc
