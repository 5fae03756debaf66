#pragma once

#include <string>

#include "core/geometry/VpcPoint3D.h"

namespace vpc {

/// The lines that scans have as text, one for every point: x y z intensity red green blue. Every
/// number is the shortest text that reads back as the same value, in any locale, and has no
/// exponent unless it is very large or very small.
class PointLine {
public:
    /// Appends the line to `text`.
    static void Append(std::string& text, const VpcPoint3D& p, char separator = ' ');
};

}  // namespace vpc
