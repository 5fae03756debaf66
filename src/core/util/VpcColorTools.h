#pragma once

#include "core/util/VpcDefinitions.h"

/// Colour ramps: a value's place between `min` and `max` becomes red, green and blue on the scale
/// 0 to 255.
///
/// Deliberately, no ramp clamps its input: values outside the range extrapolate, and Hydro's blue
/// runs past 255 by itself. An empty range gives infinities or NaN (0 in Jet).
class VpcColorTools {
public:
    /// Applies the ramp of `scheme`; for ScanColors, which has none, and for unknown schemes the
    /// colour keeps its value.
    static void ApplyColorScheme(double value, double min, double max, VpcColorScheme scheme,
                                 double& red, double& green, double& blue);

    /// The ramp of Spectrum.
    static void ApplyColorSchemeJet(double value, double min, double max, double& red,
                                    double& green, double& blue);
    static void ApplyColorSchemeEarth(double value, double min, double max, double& red,
                                      double& green, double& blue);
    static void ApplyColorSchemeHydro(double value, double min, double max, double& red,
                                      double& green, double& blue);
    static void ApplyColorSchemeGray(double value, double min, double max, double& red,
                                     double& green, double& blue);
    static void ApplyColorSchemeReds(double value, double min, double max, double& red,
                                     double& green, double& blue);
    static void ApplyColorSchemeGreens(double value, double min, double max, double& red,
                                       double& green, double& blue);
    static void ApplyColorSchemeBlues(double value, double min, double max, double& red,
                                      double& green, double& blue);
};
