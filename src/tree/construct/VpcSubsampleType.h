#pragma once

#include <cstdint>

/// How a parent level is thinned out of the level below it.
enum VpcSubsampleType : std::uint32_t {
    Subsample_Random = 0,  ///< every point is kept with a fixed probability
    Subsample_Grid = 1     ///< one point is kept for each cell of a regular grid
};
