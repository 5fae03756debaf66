#pragma once

#include <cstdint>
#include <random>

namespace vpc {

/// Random numbers that are the same from every standard library: its engine is defined to the
/// bit, its distributions are not.
class SampleRandom {
public:
    explicit SampleRandom(std::uint64_t seed) : engine_(seed) {}

    /// A number in [0, 1).
    double Unit() { return static_cast<double>(engine_() >> 11) * 0x1p-53; }
    /// A number in [-1, 1), more often near 0.
    double Bell() { return Unit() + Unit() - 1.0; }

private:
    std::mt19937_64 engine_;
};

}  // namespace vpc
