#include "core/util/VpcColorTools.h"

#include <algorithm>
#include <cmath>

#include "core/geometry/VpcNumMathTools.h"

namespace {

double ramp(double value, double min, double max, double from, double to) {
    return VpcNumMathTools::LinearInterpolate(value, min, max, from, to);
}

/// The darkest step of the ramps of one colour: not black, so that their low end can be seen.
constexpr double darkest = 38;

/// A hump of Jet around `centre`, both on the scale 0 to 255.
double jetChannel(double t, double centre) {
    // The 0 comes first so that it wins over a NaN.
    return std::min(std::max(0.0, 1.5 - std::abs((t - centre) * 0.015625)), 1.0) * 255;
}

}  // namespace

void VpcColorTools::ApplyColorScheme(double value, double min, double max, VpcColorScheme scheme,
                                     double& red, double& green, double& blue) {
    switch (scheme) {
        case VPC_ColorScheme_Spectrum:
            return ApplyColorSchemeJet(value, min, max, red, green, blue);
        case VPC_ColorScheme_Earth:
            return ApplyColorSchemeEarth(value, min, max, red, green, blue);
        case VPC_ColorScheme_Hydro:
            return ApplyColorSchemeHydro(value, min, max, red, green, blue);
        case VPC_ColorScheme_Gray:
            return ApplyColorSchemeGray(value, min, max, red, green, blue);
        case VPC_ColorScheme_Reds:
            return ApplyColorSchemeReds(value, min, max, red, green, blue);
        case VPC_ColorScheme_Greens:
            return ApplyColorSchemeGreens(value, min, max, red, green, blue);
        case VPC_ColorScheme_Blues:
            return ApplyColorSchemeBlues(value, min, max, red, green, blue);
        case VPC_ColorScheme_ScanColors:
            return;
    }
}

void VpcColorTools::ApplyColorSchemeJet(double value, double min, double max, double& red,
                                        double& green, double& blue) {
    const double t = (value - min) * 255 / (max - min);
    red = jetChannel(t, 192);
    green = jetChannel(t, 128);
    blue = jetChannel(t, 64);
}

void VpcColorTools::ApplyColorSchemeEarth(double value, double min, double max, double& red,
                                          double& green, double& blue) {
    red = ramp(value, min, max, 195, 255);
    green = ramp(value, min, max, 95, 255);
    blue = 0;
}

void VpcColorTools::ApplyColorSchemeHydro(double value, double min, double max, double& red,
                                          double& green, double& blue) {
    red = 0;
    green = ramp(value, min, max, 0, 191);
    blue = ramp(value, min, max, darkest, 288);
}

void VpcColorTools::ApplyColorSchemeGray(double value, double min, double max, double& red,
                                         double& green, double& blue) {
    red = green = blue = ramp(value, min, max, 0, 255);
}

void VpcColorTools::ApplyColorSchemeReds(double value, double min, double max, double& red,
                                         double& green, double& blue) {
    red = ramp(value, min, max, darkest, 255);
    green = blue = 0;
}

void VpcColorTools::ApplyColorSchemeGreens(double value, double min, double max, double& red,
                                           double& green, double& blue) {
    green = ramp(value, min, max, darkest, 255);
    red = blue = 0;
}

void VpcColorTools::ApplyColorSchemeBlues(double value, double min, double max, double& red,
                                          double& green, double& blue) {
    blue = ramp(value, min, max, darkest, 255);
    red = green = 0;
}
