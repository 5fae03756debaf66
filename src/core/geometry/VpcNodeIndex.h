#pragma once

#include <utility>
#include <vector>

#include <wx/string.h>

#include "core/geometry/VpcTriplet.h"

/// The path of a tree node from the root: one triplet (steps in x, y and z) a level.
class VpcNodeIndex : public std::vector<VpcTriplet<unsigned long long>> {
public:
    using Path = std::vector<VpcTriplet<unsigned long long>>;
    using Path::Path;

    VpcNodeIndex() = default;
    VpcNodeIndex(Path path) : Path(std::move(path)) {}

    /// Whether both paths have the same length and the same triplets in the same order.
    bool IsSame(const Path& other) const { return static_cast<const Path&>(*this) == other; }

    /// The texts of the triplets from the root down, such as "-0-0-0---1-0-1--"; empty for an
    /// empty path.
    wxString ToString() const {
        // The text does not depend on the width; every caller passes 4.
        wxString text;
        for (const auto& step : *this) text += step.ToString(4);
        return text;
    }
};
