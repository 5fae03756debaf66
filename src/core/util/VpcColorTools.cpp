#include "core/util/VpcColorTools.h"

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
