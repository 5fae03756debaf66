#include "core/util/DrawingUnits.h"

#include <array>

namespace vpc {

namespace {

struct Unit {
    const char* plural;
    const char* singular;
    const char* abbreviation;
};

constexpr std::array<Unit, 21> units = {{{"Undefined", "Unitless", ""},
                                         {"Inches", "Inch", "in"},
                                         {"Feet", "Foot", "ft"},
                                         {"Miles", "Mile", "mi"},
                                         {"Millimeters", "Millimeter", "mm"},
                                         {"Centimeters", "Centimeter", "cm"},
                                         {"Meters", "Meter", "m"},
                                         {"Kilometers", "Kilometer", "km"},
                                         {"Microinches", "Microinch", "uin"},
                                         {"Mils", "Mil", "thou"},
                                         {"Yards", "Yard", "yd"},
                                         {"Angstroms", "Angstrom", ""},
                                         {"Nanometers", "Nanometer", "nm"},
                                         {"Microns", "Micron", "um"},
                                         {"Decimeters", "Decimeter", "dm"},
                                         {"Dekameters", "Dekameter", "dam"},
                                         {"Hectometers", "Hectometer", "hm"},
                                         {"Gigameters", "Gigameter", "gm"},
                                         {"Astronomical", "Astronomical", "au"},
                                         {"LightYears", "LightYear", "ly"},
                                         {"Parsecs", "Parsec", "pc"}}};

/// In small letters, and with metres spelt as in the names above.
std::string plainly(const std::string& text) {
    std::string plain = text;
    for (char& c : plain) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    const std::string british = "metre";
    if (const auto at = plain.rfind(british); at != std::string::npos)
        plain.replace(at, british.size(), "meter");
    return plain;
}

}  // namespace

std::string DrawingUnits::Name(unsigned long long code) {
    return code < units.size() ? units[code].plural : "";
}

std::string DrawingUnits::Symbol(unsigned long long code) {
    if (code == undefined || code >= units.size()) return "";
    const Unit& unit = units[code];
    return *unit.abbreviation != '\0' ? unit.abbreviation : unit.plural;
}

std::optional<unsigned long long> DrawingUnits::Parse(const std::string& text) {
    if (text.empty()) return std::nullopt;
    const std::string plain = plainly(text);
    for (unsigned long long code = 0; code < units.size(); ++code) {
        const Unit& unit = units[code];
        if (plain == std::to_string(code) || plain == plainly(unit.plural) ||
            plain == plainly(unit.singular) || plain == unit.abbreviation)
            return code;
    }
    return std::nullopt;
}

std::string DrawingUnits::List() {
    std::string list;
    for (unsigned long long code = 0; code < units.size(); ++code)
        list += (code == 0 ? "" : ", ") + std::to_string(code) + " " + units[code].plural;
    return list;
}

}  // namespace vpc
