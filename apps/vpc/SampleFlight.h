#pragma once

#include <cstdint>

#include "SampleScene.h"

namespace vpc {

/// A survey flight over a square of the made-up landscape, about ten points a square metre: strips
/// flown to and fro, each of scan lines that zigzag across it. Gives its points in the order in
/// which they would be measured.
class SampleFlight {
public:
    SampleFlight(unsigned long long points, std::uint64_t seed);

    /// The next point; there are as many as the constructor was told.
    SamplePoint Next();

    /// Of the point given last: its strip, its time in seconds, where on the scan line it is
    /// (-1 to 1) and which way the mirror moved.
    unsigned Strip() const { return strip_; }
    double Time() const { return static_cast<double>(done_) * 2e-6; }
    double Across() const { return across_; }
    bool Forwards() const { return line_ % 2 == 0; }

    /// The south-west corner of the square.
    static constexpr double originX = 458000.0;
    static constexpr double originY = 5428000.0;

private:
    void NextPlace();

    SampleScene scene_;
    SampleRandom random_;
    double side_;
    unsigned strips_;
    unsigned long long linesPerStrip_;
    unsigned long long pointsPerLine_;
    unsigned long long done_ = 0;
    unsigned strip_ = 0;
    unsigned long long line_ = 0;
    unsigned long long onLine_ = 0;
    double across_ = 0.0;
};

}  // namespace vpc
