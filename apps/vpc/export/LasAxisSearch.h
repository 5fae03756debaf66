#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "vpc/export/LasAxis.h"

namespace vpc {

/// Finds the coarsest power of ten as scale, and an offset, with which a LAS file gives every
/// coordinate of an axis back to the last bit.
///
/// No formula tells them: a scan that was LAS once gives its doubles back with its own offset, and
/// often with that alone, since each rounds in its own way. So a great many scales and offsets that
/// people and programs use are tried on a sample. Those that pass are tried on every coordinate.
/// Where none passes, those with the smallest errors are, and the best is taken.
class LasAxisSearch {
public:
    /// \param sample coordinates from all over the axis; its smallest and its largest are among
    ///               them
    explicit LasAxisSearch(std::vector<double> sample);

    /// Whether Measure still has to see all coordinates, once more. Never more than twice.
    bool NeedsPass() const { return !done_; }
    /// Tries the candidates on some coordinates.
    void Measure(std::span<const double> coordinates);
    /// All coordinates have been measured.
    void EndPass();

    const LasAxis& Best() const { return best_.axis; }
    /// The largest distance of any coordinate from what a reader gets; 0 where all are exact.
    double Error() const { return best_.error; }

private:
    struct Candidate {
        LasAxis axis;
        double error = 0.0;
    };

    /// Offsets worth trying with a scale, the most usual ones first.
    /// \param around how many multiples of a power of ten at one place
    std::vector<double> OffsetsFor(double scale, int around) const;
    /// Tries the scales 10 to the power of n times `factor`.
    void FindExact(double factor);
    void FindNearest();
    double SampleError(const LasAxis& axis, double enough) const;

    std::vector<double> sample_;
    double low_;
    double high_;
    int coarsest_;
    std::vector<Candidate> candidates_;
    bool exact_ = true;
    bool done_ = false;
    Candidate best_;
};

}  // namespace vpc
