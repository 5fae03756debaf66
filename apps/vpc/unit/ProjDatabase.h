#pragma once

#include <proj.h>

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "vpc/unit/CoordinateUnit.h"

namespace vpc {

/// Asks PROJ for the units of coordinate systems. It uses PROJ's own database and never the
/// network. What PROJ does not know or cannot read has no units; nothing throws for it.
class ProjDatabase {
public:
    ProjDatabase();

    /// The unit of length with this EPSG code.
    std::optional<CoordinateUnit> UnitOfCode(int code) const;
    /// The units of the system with this EPSG code.
    SystemUnits SystemOfCode(int code);
    /// The units of the system that a WKT text of any dialect describes.
    SystemUnits SystemOfWkt(const std::string& wkt);

private:
    struct Destroyer {
        void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
        void operator()(PJ* object) const { proj_destroy(object); }
    };
    using Object = std::unique_ptr<PJ, Destroyer>;

    SystemUnits UnitsOf(const Object& system) const;
    /// The unit of one axis of a system that is not put together from others.
    std::optional<CoordinateUnit> AxisUnit(const Object& system, int axis) const;

    std::unique_ptr<PJ_CONTEXT, Destroyer> context_;
    /// What has been asked, since the tiles of a site all name one system.
    std::map<std::string, SystemUnits> answers_;
};

}  // namespace vpc
