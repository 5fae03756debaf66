#pragma once

#include <algorithm>
#include <cmath>

#include "core/geometry/VpcNumMathTools.h"
#include "core/util/VpcDefinitions.h"

/// Colour ramps: they turn a value's place between `min` and `max` into red, green and blue on the
/// scale 0 to 255.
///
/// Deliberately, no ramp clamps its input: values outside the range extrapolate, and Hydro's blue
/// runs past 255 by itself. An empty range gives infinities or NaN (0 in Jet). The ramps are
/// defined here because they run once for every point that is shown.
class VpcColorTools {
public:
    /// Applies the ramp of `scheme`; for ScanColors, which has none, and for unknown schemes the
    /// colour keeps its value.
    static void ApplyColorScheme(double value, double min, double max, VpcColorScheme scheme,
                                 double& red, double& green, double& blue);

    /// The ramp of Spectrum.
    static void ApplyColorSchemeJet(double value, double min, double max, double& red,
                                    double& green, double& blue) {
        const double t = (value - min) * 255 / (max - min);
        red = JetChannel(t, 192);
        green = JetChannel(t, 128);
        blue = JetChannel(t, 64);
    }
    static void ApplyColorSchemeEarth(double value, double min, double max, double& red,
                                      double& green, double& blue) {
        red = Ramp(value, min, max, 195, 255);
        green = Ramp(value, min, max, 95, 255);
        blue = 0;
    }
    static void ApplyColorSchemeHydro(double value, double min, double max, double& red,
                                      double& green, double& blue) {
        red = 0;
        green = Ramp(value, min, max, 0, 191);
        blue = Ramp(value, min, max, darkest, 288);
    }
    static void ApplyColorSchemeGray(double value, double min, double max, double& red,
                                     double& green, double& blue) {
        red = green = blue = Ramp(value, min, max, 0, 255);
    }
    static void ApplyColorSchemeReds(double value, double min, double max, double& red,
                                     double& green, double& blue) {
        red = Ramp(value, min, max, darkest, 255);
        green = blue = 0;
    }
    static void ApplyColorSchemeGreens(double value, double min, double max, double& red,
                                       double& green, double& blue) {
        green = Ramp(value, min, max, darkest, 255);
        red = blue = 0;
    }
    static void ApplyColorSchemeBlues(double value, double min, double max, double& red,
                                      double& green, double& blue) {
        blue = Ramp(value, min, max, darkest, 255);
        red = green = 0;
    }

private:
    /// Where the ramps of a single colour start: not at black, so that their low end can be seen.
    static constexpr double darkest = 38;

    static double Ramp(double value, double min, double max, double from, double to) {
        return VpcNumMathTools::LinearInterpolate(value, min, max, from, to);
    }
    /// One channel of Jet, which peaks around `centre`; `t` and `centre` are on the scale 0 to 255.
    static double JetChannel(double t, double centre) {
        // std::max gives its first argument where the second is a NaN, which thus becomes 0.
        return std::min(std::max(0.0, 1.5 - std::abs((t - centre) * 0.015625)), 1.0) * 255;
    }
};
