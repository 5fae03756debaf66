#pragma once

#include <string>

namespace vpc::viewer {

/// A unit as it stands behind a number: "m" for "Meters".
/// \param name as the palette names it; one that has no usual symbol stands for itself, and that of
///             no unit gives none
std::string unitSymbol(const std::string& name);

}  // namespace vpc::viewer
