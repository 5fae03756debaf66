#pragma once

#include <array>

#include "vpc/tree/DeepestLevel.h"
#include "vpc/tree/MeasuredBounds.h"

namespace vpc {

/// What all points of a tree file come to, found in one pass over its deepest level.
struct PointStatistics {
    struct Range {
        /// What the values are: "x", "intensity".
        const char* name;
        double minimum;
        double maximum;
        double mean;
    };

    /// x, y, z, intensity, red, green and blue.
    std::array<Range, 7> ranges;
    /// The area that the points cover in plan, in the square of the coordinates' unit: that of the
    /// cells of a raster that hold points. Its cells would hold 16 points each if all lay evenly.
    double coveredArea = 0.0;

    /// The points must not be none. Throws IoError where they cannot be read.
    /// \param root the root's box
    static PointStatistics Measure(DeepestLevel& level, const Bounds& root,
                                   const DeepestLevel::Watcher& watcher);
    /// The smallest box around the points.
    Bounds Extent() const;
    /// How many of `points` points lie on an area of 1.
    double Density(unsigned long long points) const {
        return static_cast<double>(points) / coveredArea;
    }
    /// How far apart `points` points would lie if they covered the area evenly.
    double SpacingOf(unsigned long long points) const;
};

}  // namespace vpc
