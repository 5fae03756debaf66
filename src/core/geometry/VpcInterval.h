#pragma once

#include <algorithm>

/// A range of numbers; min never lies above max.
class VpcInterval {
public:
    double min = 0.0;
    double max = 0.0;

    VpcInterval(double a, double b) { SetInterval(a, b); }

    /// The bounds in either order.
    void SetInterval(double a, double b) {
        min = std::min(a, b);
        max = std::max(a, b);
    }
    /// Makes `v` the min; where it lies above the max, the old max is the min and `v` the max.
    void ReplaceMin(double v) { SetInterval(v, max); }
    /// Makes `v` the max; where it lies below the min, the old min is the max and `v` the min.
    void ReplaceMax(double v) { SetInterval(min, v); }
    /// Adds the fraction `f` of the length at each end. A fraction below -0.5 turns the interval
    /// round its centre.
    void AddBoundary(double f) {
        const double d = (max - min) * f;
        SetInterval(min - d, max + d);
    }

    /// Whether the intervals share more than an end.
    bool OverlapsHalfOpen(const VpcInterval& other) const {
        return Lower(other).max > std::max(min, other.min);
    }
    /// Whether the intervals share anything.
    bool OverlapsClosed(const VpcInterval& other) const {
        return Lower(other).max >= std::max(min, other.min);
    }

private:
    /// The interval that begins first; `other` where both begin together.
    const VpcInterval& Lower(const VpcInterval& other) const {
        return min < other.min ? *this : other;
    }
};
