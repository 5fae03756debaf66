#pragma once

/// Which value of a point decides its colour, numbered as VpcStylizationType.
enum GiPcStylizationType : int {
    GiPc_Stylization_SCANCOLORS = 0,
    GiPc_Stylization_ELEVATION = 1,
    GiPc_Stylization_INTENSITY = 2,
    GiPc_Stylization_NONE = 3
};
