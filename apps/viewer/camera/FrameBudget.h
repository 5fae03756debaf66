#pragma once

#include <cstddef>

namespace vpc::viewer {

/// Knows from measurements how long drawing takes: a fixed part, and a time for each point. Older
/// measurements count less and less.
class FrameBudget {
public:
    /// Tells how long it took to draw points. What cannot be is ignored, and so is a single
    /// outlier; two in a row are another speed.
    void Measured(std::size_t points, double milliseconds);

    /// How long that many points will take.
    double MillisecondsFor(std::size_t points) const;
    /// How many points fit into a time; a few at least, so that drawing gets on however slow it is.
    std::size_t PointsIn(double milliseconds) const;
    /// Into how many interleaved slices a picture of `points` is cut so that each fits into a time:
    /// point i belongs to slice i % step. 1 or more.
    std::size_t Step(std::size_t points, double milliseconds) const;

private:
    double fixedMs_ = 1.0;
    double msPerPoint_ = 2e-4;  // until something has been measured
    // Weighted sums of what was measured: n, points, milliseconds, points squared, their product.
    double weight_ = 0.0;
    double sumX_ = 0.0;
    double sumY_ = 0.0;
    double sumXX_ = 0.0;
    double sumXY_ = 0.0;
    int wild_ =
        0;  // whether the last measurement was far above (1) or below (-1) what was expected
};

}  // namespace vpc::viewer
