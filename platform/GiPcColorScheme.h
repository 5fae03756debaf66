#pragma once

/// The host's colour ramps, numbered as VpcColorScheme.
enum GiPcColorScheme : int {
    GiPc_ColorScheme_ScanColors = 0,
    GiPc_ColorScheme_Spectrum = 1,
    GiPc_ColorScheme_Earth = 2,
    GiPc_ColorScheme_Hydro = 3,
    GiPc_ColorScheme_Gray = 4,
    GiPc_ColorScheme_Reds = 5,
    GiPc_ColorScheme_Greens = 6,
    GiPc_ColorScheme_Blues = 7
};
