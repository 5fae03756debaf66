#include "vpc/view/ViewOptions.h"

#include <CLI/CLI.hpp>

#include "core/util/FileTools.h"
#include "core/util/VpcDefinitions.h"

namespace vpc {

namespace {

// The words for a view's settings. A word's place in its list is the number of what it names.

std::vector<std::string> stylizationWords() {
    // The last is the host's "none": points keep the colours of the scan, if they have any.
    return {"scan", "elevation", "intensity", "auto"};
}

/// "ScanColors", "Spectrum" and so on.
std::vector<std::string> schemeWords() {
    std::vector<std::string> names;
    for (int scheme = VPC_ColorScheme_ScanColors; scheme <= VPC_ColorScheme_Blues; ++scheme) {
        const wxString name =
            VpcDefinitions::GetVpcColorScheme(static_cast<VpcColorScheme>(scheme));
        names.push_back(FileTools::ToNativePath(name.AfterLast('_')));
    }
    return names;
}

/// The word's place in the list, in any letter case.
int placeOf(const std::string& word, const std::vector<std::string>& words) {
    int place = 0;
    while (CLI::detail::to_lower(words[static_cast<std::size_t>(place)]) !=
           CLI::detail::to_lower(word))
        ++place;
    return place;
}

}  // namespace

ViewOptions::ViewOptions(CLI::App& options) : ShownOptions(options) {
    options
        .add_option(
            "--stylization", stylizationText_,
            "What the colours show: scan, elevation, intensity, or auto: the scan's colours; in "
            "a picture of points without any, their intensity or else elevation")
        ->check(CLI::IsMember(stylizationWords(), CLI::ignore_case))
        ->capture_default_str()
        ->type_name("WHAT");
    options
        .add_option("--scheme", schemeText_,
                    "Colour ramp for elevation and intensity, default: Spectrum; Gray for the "
                    "intensity in a picture")
        ->check(CLI::IsMember(schemeWords(), CLI::ignore_case))
        ->type_name("NAME");
}

GiPcStylizationType ViewOptions::Stylization() const {
    return static_cast<GiPcStylizationType>(placeOf(stylizationText_, stylizationWords()));
}

std::optional<GiPcColorScheme> ViewOptions::Scheme() const {
    if (schemeText_.empty()) return std::nullopt;
    return static_cast<GiPcColorScheme>(placeOf(schemeText_, schemeWords()));
}

void ViewOptions::SetUp(GiPointSetDefinition& points) const {
    ShownOptions::SetUp(points);
    points.setStylizationType(Stylization());
    points.setColorScheme(Scheme().value_or(GiPc_ColorScheme_Spectrum));
}

}  // namespace vpc
