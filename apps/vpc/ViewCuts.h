#pragma once

#include <vector>

#include "ClipRegion.h"
#include "SectionPlane.h"
#include "ViewOptions.h"

namespace vpc {

/// The sections and clipping regions that a view is asked for.
struct ViewCuts {
    std::vector<SectionPlane> sections;
    std::vector<ClipRegion> clips;

    /// Throws CommandUsageError for what is neither.
    static ViewCuts Parse(const ViewOptions& options) {
        ViewCuts cuts;
        for (const std::string& text : options.sections)
            cuts.sections.push_back(SectionPlane::Parse(text));
        for (const std::string& text : options.clipCircles)
            cuts.clips.push_back(ClipRegion::ParseCircle(text));
        for (const std::string& text : options.clipPolygons)
            cuts.clips.push_back(ClipRegion::ParsePolygon(text));
        return cuts;
    }
};

}  // namespace vpc
