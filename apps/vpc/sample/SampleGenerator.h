#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>

namespace vpc {

/// One point of a made-up scan.
struct SamplePoint {
    /// Classes as LAS files number them.
    enum Class : std::uint8_t { ground = 2, tree = 5, building = 6, road = 11 };

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    /// Colours of 16 bits.
    std::uint16_t red = 0;
    std::uint16_t green = 0;
    std::uint16_t blue = 0;
    /// 0 to 32767.
    std::uint16_t intensity = 0;
    Class classification = ground;
};

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

/// A made-up landscape without end: hills, streets, houses with gabled or flat roofs, fields and
/// woods. Nothing of it is stored; everything follows from the seed and the place. Only the basic
/// arithmetic operations are used, so that every machine gives the same bits.
class SampleScene {
public:
    explicit SampleScene(std::uint64_t seed);

    /// What a laser from above hits at this place, in metres.
    SamplePoint Hit(double x, double y, SampleRandom& random) const;
    double Ground(double x, double y) const;

private:
    struct Colour {
        double red, green, blue;
    };

    bool HitHouse(SamplePoint& point, SampleRandom& random) const;
    bool HitTree(SamplePoint& point, SampleRandom& random) const;
    void HitGround(SamplePoint& point, SampleRandom& random) const;
    /// The share of the places for trees that have one.
    double TreeShare(double x, double y) const;
    bool IsTown(double x, double y) const;
    /// A value from 0 to 1 that is always the same for a cell; `what` chooses one of several
    /// values.
    double CellValue(std::int64_t cellX, std::int64_t cellY, std::uint64_t what) const;
    /// Smooth hills between 0 and 1, about `wavelength` metres apart.
    double Noise(double x, double y, double wavelength, std::uint64_t what) const;
    static void Paint(SamplePoint& point, const Colour& colour, double intensity,
                      SampleRandom& random);

    /// One key for everything that a cell's value is used for.
    static constexpr std::size_t keyCount = 16;
    std::array<std::uint64_t, keyCount> keys_{};
};

/// A survey flight over a square of the made-up landscape, about ten points a square metre: strips
/// flown to and fro, each of scan lines that zigzag across it. Gives its points in the order in
/// which they would be measured.
class SampleFlight {
public:
    SampleFlight(unsigned long long points, std::uint64_t seed);

    /// The next point; there are as many as the constructor was given.
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
