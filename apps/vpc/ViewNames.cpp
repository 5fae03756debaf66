#include "ViewNames.h"

#include <CLI/CLI.hpp>

#include "core/util/FileTools.h"
#include "core/util/VpcDefinitions.h"

namespace vpc {

namespace {

/// The word's place in the list, which is the number of what it names.
int placeOf(const std::string& word, const std::vector<std::string>& words) {
    int place = 0;
    while (CLI::detail::to_lower(words[static_cast<std::size_t>(place)]) !=
           CLI::detail::to_lower(word))
        ++place;
    return place;
}

}  // namespace

std::vector<std::string> ViewNames::Schemes() {
    std::vector<std::string> names;
    for (int scheme = VPC_ColorScheme_ScanColors; scheme <= VPC_ColorScheme_Blues; ++scheme) {
        const wxString name =
            VpcDefinitions::GetVpcColorScheme(static_cast<VpcColorScheme>(scheme));
        names.push_back(FileTools::ToNativePath(name.AfterLast('_')));
    }
    return names;
}

GiPcStylizationType ViewNames::Stylization(const std::string& word) {
    return static_cast<GiPcStylizationType>(placeOf(word, Stylizations()));
}

GiPcColorScheme ViewNames::Scheme(const std::string& word) {
    return static_cast<GiPcColorScheme>(placeOf(word, Schemes()));
}

GiPcDrawDensity ViewNames::Density(const std::string& word) {
    return static_cast<GiPcDrawDensity>(placeOf(word, Densities()));
}

}  // namespace vpc
