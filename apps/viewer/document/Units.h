#pragma once

#include <optional>
#include <string>

namespace vpc::viewer {

/// The units of a drawing, as this host numbers and names them; the plug-in's palette uses the same
/// names.
struct Units {
    /// Empty for a number that no unit has.
    static std::string Name(int code);
    static std::optional<int> Code(const std::string& name);
    /// A unit as it stands behind a number: "m" for "Meters". A name without a usual symbol stands
    /// for itself, and that of no unit gives none.
    static std::string Symbol(const std::string& name);
};

}  // namespace vpc::viewer
