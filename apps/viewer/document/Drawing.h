#pragma once

#include <string>
#include <vector>

#include "viewer/document/Clip.h"
#include "viewer/document/Entity.h"
#include "viewer/document/Section.h"
#include "viewer/document/ViewStyle.h"

namespace vpc::viewer {

/// All that a drawing consists of, but for the points. It is small, so that states of it are kept
/// whole: undoing a step is putting an older state back.
struct Drawing {
    std::vector<Entity> entities;
    std::vector<Section> sections;
    std::vector<Clip> clips;
    ViewStyle style;
    /// Of coordinates and lengths, as the palette names it ("Meters"): the first file's. Empty as
    /// long as no file was opened.
    std::string unit;
    /// How many points are shown at most (POINTCLOUDPOINTMAX), of all entities together.
    unsigned long long pointBudget = 5'000'000;

    bool operator==(const Drawing&) const = default;

    /// Null where there is none.
    const Entity* Find(int id) const;
    Entity* Find(int id);
};

}  // namespace vpc::viewer
