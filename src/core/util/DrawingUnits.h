#pragma once

#include <optional>
#include <string>

namespace vpc {

/// The units a drawing may be in, numbered as CAD hosts number them.
class DrawingUnits {
public:
    static constexpr unsigned long long undefined = 0;
    static constexpr unsigned long long feet = 2;
    static constexpr unsigned long long metres = 6;

    /// The name of the unit with this code; empty if there is none.
    static std::string Name(unsigned long long code);
    /// The unit's usual abbreviation, else its name; empty for a code without unit.
    static std::string Symbol(unsigned long long code);
    /// The code of the unit that `text` names: by its code, its usual abbreviation, or its name in
    /// singular or plural, in any letter case; metres in British spelling as well.
    static std::optional<unsigned long long> Parse(const std::string& text);
    /// Every code with its name, for a help text.
    static std::string List();
};

}  // namespace vpc
