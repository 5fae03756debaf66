#pragma once

#include <optional>
#include <string>

namespace vpc {

/// The units a drawing may be in, numbered as CAD hosts number them.
class DrawingUnits {
public:
    /// The name of a unit's code; empty for a code that is none.
    static std::string Name(unsigned long long code);
    /// The code of a unit given as its code or its name, singular or plural, in any letter case.
    static std::optional<unsigned long long> Parse(const std::string& text);
    /// Every code with its name, for a help text.
    static std::string List();
};

}  // namespace vpc
