#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "SamplePoint.h"
#include "SampleRandom.h"

namespace vpc {

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
    /// 0 to 1, the same for a cell whenever it is asked for; `what` tells several apart.
    double CellValue(std::int64_t cellX, std::int64_t cellY, std::uint64_t what) const;
    /// Smooth hills between 0 and 1, about `wavelength` metres apart.
    double Noise(double x, double y, double wavelength, std::uint64_t what) const;
    static void Paint(SamplePoint& point, const Colour& colour, double intensity,
                      SampleRandom& random);

    /// One for everything that a cell is asked for.
    static constexpr std::size_t keyCount = 16;
    std::array<std::uint64_t, keyCount> keys_{};
};

}  // namespace vpc
