#pragma once

#include <string>
#include <vector>

namespace vpc {

/// The unit that a tree file is to carry, chosen from what `--unit` says and what the scans say.
struct UnitChoice {
    /// The value of `--unit` that leaves the choice to the scans.
    static constexpr const char* automatic = "auto";

    /// The unit's code among DrawingUnits.
    unsigned long long code = 0;
    /// Which unit it is and why, for the user; empty where the user has chosen it.
    std::string reason;
    /// What the user should know about it: sentences in the system's encoding.
    std::vector<std::string> warnings;

    /// Chooses the unit. Scans that cannot be read name none, so nothing throws for them.
    /// \param option a value of `--unit` that Fault has nothing against
    /// \param scans  names in the system's encoding
    static UnitChoice Make(const std::string& option, const std::vector<std::string>& scans);
    /// Why `option` is no value for `--unit`; empty where it is one.
    static std::string Fault(const std::string& option);
};

}  // namespace vpc
