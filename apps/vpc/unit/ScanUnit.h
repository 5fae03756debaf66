#pragma once

#include <optional>
#include <string>
#include <vector>

#include "vpc/unit/CoordinateUnit.h"

namespace vpc {

class ProjDatabase;

/// What one scan says about the unit of its coordinates.
struct ScanUnit {
    /// A unit, and the part of the file that names it, as in "its GeoTIFF keys".
    struct Statement {
        CoordinateUnit unit;
        std::string source;
    };

    /// Of eastings and northings; the first is the one to go by. Empty where the scan names none,
    /// as a text scan does.
    std::vector<Statement> horizontal;
    /// Of heights, likewise.
    std::vector<Statement> vertical;
    /// A part of the file that should name the unit of eastings and northings, but in a way that
    /// PROJ does not understand; empty where there is none.
    std::string unknown;
    /// As a positive number; 0 where it is not known.
    double largestCoordinate = 0.0;

    /// Looks into a file, whose name is in the system's encoding. A file that is damaged or cannot
    /// be read names no unit.
    static ScanUnit Read(const std::string& file, ProjDatabase& database);
};

}  // namespace vpc
