#pragma once

#include <vector>

namespace vpc::draw {

/// From the smallest to the largest of some values.
struct ValueRange {
    double min = 0.0;
    double max = 0.0;

    /// What lies between the 1st and the 99th percentile of the values, so that few strays do not
    /// take the colours from the others. 0 to 0 where there are none; what is not finite does not
    /// count.
    static ValueRange WithoutStrays(std::vector<double> values);
};

}  // namespace vpc::draw
