#include "viewer/document/Units.h"

#include <array>
#include <string_view>

namespace vpc::viewer {

namespace {

struct Unit {
    std::string_view name;
    std::string_view symbol;
};

/// In the order of their numbers.
constexpr std::array<Unit, 21> units = {
    {{"Undefined", ""},      {"Inches", "in"},      {"Feet", "ft"},
     {"Miles", "mi"},        {"Millimeters", "mm"}, {"Centimeters", "cm"},
     {"Meters", "m"},        {"Kilometers", "km"},  {"Microinches", "uin"},
     {"Mils", "thou"},       {"Yards", "yd"},       {"Angstroms", "Angstroms"},
     {"Nanometers", "nm"},   {"Microns", "um"},     {"Decimeters", "dm"},
     {"Dekameters", "dam"},  {"Hectometers", "hm"}, {"Gigameters", "Gm"},
     {"Astronomical", "au"}, {"LightYears", "ly"},  {"Parsecs", "pc"}}};

}  // namespace

std::string Units::Name(int code) {
    if (code < 0 || static_cast<std::size_t>(code) >= units.size()) return {};
    return std::string(units[static_cast<std::size_t>(code)].name);
}

std::optional<int> Units::Code(const std::string& name) {
    for (std::size_t code = 0; code < units.size(); ++code)
        if (units[code].name == name) return static_cast<int>(code);
    return std::nullopt;
}

std::string Units::Symbol(const std::string& name) {
    const auto code = Code(name);
    return code ? std::string(units[static_cast<std::size_t>(*code)].symbol) : name;
}

}  // namespace vpc::viewer
