#pragma once

#include <algorithm>

/// A range of numbers; min never lies above max.
class VpcInterval {
public:
    double min = 0.0;
    double max = 0.0;

    VpcInterval(double a, double b) { SetInterval(a, b); }

    /// Takes the bounds in either order.
    void SetInterval(double a, double b) {
        min = std::min(a, b);
        max = std::max(a, b);
    }
    /// Makes `v` the min. If it lies above the max, the old max becomes the min and `v` the max.
    void ReplaceMin(double v) { SetInterval(v, max); }
    /// Makes `v` the max. If it lies below the min, the old min becomes the max and `v` the min.
    void ReplaceMax(double v) { SetInterval(min, v); }
    /// Adds the fraction `f` of the length at each end. With a fraction below -0.5 the ends change
    /// places.
    void AddBoundary(double f) {
        const double d = (max - min) * f;
        SetInterval(min - d, max + d);
    }

    /// Whether the intervals share more than a single end point.
    bool OverlapsHalfOpen(const VpcInterval& other) const {
        return Lower(other).max > std::max(min, other.min);
    }
    /// Whether the intervals share at least one number.
    bool OverlapsClosed(const VpcInterval& other) const {
        return Lower(other).max >= std::max(min, other.min);
    }

private:
    /// The interval with the lower min; `other` when both have the same.
    const VpcInterval& Lower(const VpcInterval& other) const {
        return min < other.min ? *this : other;
    }
};
