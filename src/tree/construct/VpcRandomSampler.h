#pragma once

#include <random>

/// Keeps each point of a sequence with a fixed probability.
class VpcRandomSampler {
public:
    /// \param keepFraction   probability with which a point is kept
    /// \param seedFromDevice seeds from the system's random device in place of `seed`
    VpcRandomSampler(double keepFraction, bool seedFromDevice, int seed);

    /// Draws for the next point: whether it is kept.
    bool KeepNext() { return distribution_(generator_) < 1.0; }

private:
    double keepFraction_;
    std::mt19937 generator_;
    std::uniform_real_distribution<double> distribution_;
};
