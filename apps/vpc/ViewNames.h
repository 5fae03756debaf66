#pragma once

#include <string>
#include <vector>

#include "platform/GiPcColorScheme.h"
#include "platform/GiPcDrawDensity.h"
#include "platform/GiPcStylizationType.h"

namespace vpc {

/// The words for a view's settings. Words are taken in any letter case.
class ViewNames {
public:
    static std::vector<std::string> Stylizations() { return {"scan", "elevation", "intensity"}; }
    /// "ScanColors", "Spectrum" and so on; the place in the list is the scheme's number.
    static std::vector<std::string> Schemes();
    static std::vector<std::string> Densities() { return {"low", "full"}; }

    // For words of the lists above.

    static GiPcStylizationType Stylization(const std::string& word);
    static GiPcColorScheme Scheme(const std::string& word);
    static GiPcDrawDensity Density(const std::string& word);
};

}  // namespace vpc
