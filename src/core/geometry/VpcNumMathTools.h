#pragma once

#include <cmath>

/// Small numeric functions that several subsystems share.
class VpcNumMathTools {
public:
    /// Mixes `value` into `seed`: the 64-bit step of MurmurHash2-64A.
    static void CombineHash(unsigned long long& seed, unsigned long long value) {
        constexpr unsigned long long m = 0xc6a4a7935bd1e995ULL;
        unsigned long long k = value * m;
        k ^= k >> 47;
        k *= m;
        seed ^= k;
        seed *= m;
        seed += 0xe6546b64ULL;
    }

    /// Maps `v` linearly from one range to another, dividing first. Values outside the range are
    /// extrapolated; an empty source range gives an infinity or NaN.
    static double RescaleRange(double v, double fromMin, double fromMax, double toMin,
                               double toMax) {
        return (v - fromMin) / (fromMax - fromMin) * (toMax - toMin) + toMin;
    }

    /// The same mapping, but multiplying first. Both exist because they round differently.
    static double LinearInterpolate(double v, double fromMin, double fromMax, double toMin,
                                    double toMax) {
        return (v - fromMin) * (toMax - toMin) / (fromMax - fromMin) + toMin;
    }

    /// Further out than any coordinate of a scan. Squares and cubes of lengths up to this one are
    /// finite.
    static constexpr double beyondAll = 1e65;

    /// Whether all three are coordinates of a place: numbers, and not as far out as beyondAll.
    static bool AreCoordinates(double x, double y, double z) {
        return std::abs(x) < beyondAll && std::abs(y) < beyondAll && std::abs(z) < beyondAll;
    }
};
