#include "vpc/unit/ProjDatabase.h"

#include <cmath>
#include <cstring>

namespace vpc {

namespace {

constexpr const char* authority = "EPSG";

/// A unit as PROJ gives it; nothing where the length is none.
std::optional<CoordinateUnit> unitOf(const char* name, double metres) {
    if (!std::isfinite(metres) || metres <= 0.0) return std::nullopt;
    return CoordinateUnit{name, metres};
}

}  // namespace

ProjDatabase::ProjDatabase() : context_(proj_context_create()) {
    // Some messages are printed whatever level is set.
    proj_log_func(context_.get(), nullptr, [](void*, int, const char*) {});
    proj_context_set_enable_network(context_.get(), 0);
}

std::optional<CoordinateUnit> ProjDatabase::UnitOfCode(int code) const {
    // Nearly all scans have one of these; they are known where PROJ's database is missing, too.
    if (code == 9001) return CoordinateUnit{"metre", 1.0};
    if (code == 9002) return CoordinateUnit{"foot", 0.3048};
    if (code == 9003) return surveyFoot();
    const char* name = nullptr;
    const char* category = nullptr;
    double metres = 0.0;
    if (proj_uom_get_info_from_database(context_.get(), authority, std::to_string(code).c_str(),
                                        &name, &metres, &category) == 0 ||
        name == nullptr || category == nullptr || std::strcmp(category, "linear") != 0)
        return std::nullopt;
    return unitOf(name, metres);
}

SystemUnits ProjDatabase::SystemOfCode(int code) {
    const std::string text = std::to_string(code);
    const auto [answer, isNew] = answers_.try_emplace(text);
    if (isNew)
        answer->second = UnitsOf(Object(proj_create_from_database(
            context_.get(), authority, text.c_str(), PJ_CATEGORY_CRS, 0, nullptr)));
    return answer->second;
}

SystemUnits ProjDatabase::SystemOfWkt(const std::string& wkt) {
    const auto [answer, isNew] = answers_.try_emplace(wkt);
    if (isNew)
        answer->second = UnitsOf(
            Object(proj_create_from_wkt(context_.get(), wkt.c_str(), nullptr, nullptr, nullptr)));
    return answer->second;
}

SystemUnits ProjDatabase::UnitsOf(const Object& system) const {
    if (!system) return {};
    switch (proj_get_type(system.get())) {
        case PJ_TYPE_COMPOUND_CRS: {
            const auto part = [&](int index) {
                return UnitsOf(Object(proj_crs_get_sub_crs(context_.get(), system.get(), index)));
            };
            return {part(0).horizontal, part(1).vertical};
        }
        case PJ_TYPE_BOUND_CRS:
            return UnitsOf(Object(proj_get_source_crs(context_.get(), system.get())));
        case PJ_TYPE_VERTICAL_CRS:
            return {std::nullopt, AxisUnit(system, 0)};
        default:
            return {AxisUnit(system, 0), AxisUnit(system, 2)};
    }
}

std::optional<CoordinateUnit> ProjDatabase::AxisUnit(const Object& system, int axis) const {
    const Object axes(proj_crs_get_coordinate_system(context_.get(), system.get()));
    if (!axes || axis >= proj_cs_get_axis_count(context_.get(), axes.get())) return std::nullopt;
    const char* name = nullptr;
    double factor = 0.0;
    if (proj_cs_get_axis_info(context_.get(), axes.get(), axis, nullptr, nullptr, nullptr, &factor,
                              &name, nullptr, nullptr) == 0 ||
        name == nullptr)
        return std::nullopt;
    const auto kind = proj_cs_get_type(context_.get(), axes.get());
    const bool isAngle =
        axis < 2 && (kind == PJ_CS_TYPE_ELLIPSOIDAL || kind == PJ_CS_TYPE_SPHERICAL);
    if (isAngle) return CoordinateUnit{name, 0.0};
    return unitOf(name, factor);
}

}  // namespace vpc
