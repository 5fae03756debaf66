#pragma once

#include <optional>
#include <string>

namespace vpc {

/// A unit of coordinates as a scan names it.
struct CoordinateUnit {
    /// What it is called: "US survey foot".
    std::string name;
    /// Its length; 0 for a unit of angles, which a geographic system has.
    double metres = 0.0;

    bool IsAngle() const { return metres == 0.0; }
    /// Whether the two are one unit, however they are called. Files round what they write.
    bool IsSameAs(const CoordinateUnit& other) const;
};

CoordinateUnit surveyFoot();

/// The units of a coordinate system; either may be unknown.
struct SystemUnits {
    std::optional<CoordinateUnit> horizontal;
    std::optional<CoordinateUnit> vertical;
};

}  // namespace vpc
