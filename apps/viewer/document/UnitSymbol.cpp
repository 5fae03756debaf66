#include "viewer/document/UnitSymbol.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace vpc::viewer {

std::string unitSymbol(const std::string& name) {
    using Symbol = std::pair<std::string_view, std::string_view>;
    constexpr std::array<Symbol, 11> symbols = {{{"Undefined", ""},
                                                 {"Inches", "in"},
                                                 {"Feet", "ft"},
                                                 {"Miles", "mi"},
                                                 {"Millimeters", "mm"},
                                                 {"Centimeters", "cm"},
                                                 {"Meters", "m"},
                                                 {"Kilometers", "km"},
                                                 {"Yards", "yd"},
                                                 {"Decimeters", "dm"},
                                                 {"Microns", "um"}}};
    const auto* const found =
        std::find_if(symbols.begin(), symbols.end(),
                     [&name](const Symbol& symbol) { return symbol.first == name; });
    return std::string(found == symbols.end() ? name : found->second);
}

}  // namespace vpc::viewer
