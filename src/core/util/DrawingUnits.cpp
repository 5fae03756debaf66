#include "core/util/DrawingUnits.h"

#include <algorithm>
#include <array>

namespace vpc {

namespace {

struct Unit {
    const char* plural;
    const char* singular;
};

constexpr std::array<Unit, 21> units = {{{"Undefined", "Unitless"},
                                         {"Inches", "Inch"},
                                         {"Feet", "Foot"},
                                         {"Miles", "Mile"},
                                         {"Millimeters", "Millimeter"},
                                         {"Centimeters", "Centimeter"},
                                         {"Meters", "Meter"},
                                         {"Kilometers", "Kilometer"},
                                         {"Microinches", "Microinch"},
                                         {"Mils", "Mil"},
                                         {"Yards", "Yard"},
                                         {"Angstroms", "Angstrom"},
                                         {"Nanometers", "Nanometer"},
                                         {"Microns", "Micron"},
                                         {"Decimeters", "Decimeter"},
                                         {"Dekameters", "Dekameter"},
                                         {"Hectometers", "Hectometer"},
                                         {"Gigameters", "Gigameter"},
                                         {"Astronomical", "Astronomical"},
                                         {"LightYears", "LightYear"},
                                         {"Parsecs", "Parsec"}}};

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool sameLetters(const std::string& a, const std::string& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace

std::string DrawingUnits::Name(unsigned long long code) {
    return code < units.size() ? units[code].plural : "";
}

std::string DrawingUnits::Symbol(unsigned long long code) {
    // Code 0 stands for no unit. What has no entry is rare, and its name says more than a sign.
    constexpr std::array<const char*, 17> symbols = {
        "", "in", "ft", "mi", "mm", "cm", "m", "km", "", "", "yd", "", "nm", "", "dm", "dam", "hm"};
    if (code == 0) return "";
    const bool known = code < symbols.size() && *symbols[code] != '\0';
    return known ? symbols[code] : Name(code);
}

std::optional<unsigned long long> DrawingUnits::Parse(const std::string& text) {
    for (unsigned long long code = 0; code < units.size(); ++code) {
        const Unit& unit = units[code];
        if (text == std::to_string(code) || sameLetters(text, unit.plural) ||
            sameLetters(text, unit.singular))
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
