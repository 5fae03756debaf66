#include "core/util/VpcDefinitions.h"

wxString VpcDefinitions::GetVpcColorScheme(VpcColorScheme scheme) {
    switch (scheme) {
        case VPC_ColorScheme_Spectrum:
            return "VPC_ColorScheme_Spectrum";
        case VPC_ColorScheme_Earth:
            return "VPC_ColorScheme_Earth";
        case VPC_ColorScheme_Hydro:
            return "VPC_ColorScheme_Hydro";
        case VPC_ColorScheme_Gray:
            return "VPC_ColorScheme_Gray";
        case VPC_ColorScheme_Reds:
            return "VPC_ColorScheme_Reds";
        case VPC_ColorScheme_Greens:
            return "VPC_ColorScheme_Greens";
        case VPC_ColorScheme_Blues:
            return "VPC_ColorScheme_Blues";
        case VPC_ColorScheme_ScanColors:
            break;
    }
    return "VPC_ColorScheme_ScanColors";
}

wxString VpcDefinitions::GetVpcStylizationType(VpcStylizationType type) {
    switch (type) {
        case VPC_Stylization_ELEVATION:
            return "VPC_Stylization_ELEVATION";
        case VPC_Stylization_INTENSITY:
            return "VPC_Stylization_INTENSITY";
        case VPC_Stylization_NONE:
            return "VPC_Stylization_NONE";
        case VPC_Stylization_SCANCOLORS:
            break;
    }
    return "VPC_Stylization_SCANCOLORS";
}

wxString VpcDefinitions::GetStringVpcDataFormat(VpcDataFormat format) {
    switch (format) {
        case DataFormat_LAS:
            return "DataFormat_LAS";
        case DataFormat_PTS:
            return "DataFormat_PTS";
        case DataFormat_PTX:
            return "DataFormat_PTX";
        case DataFormat_Unknown:
            break;
    }
    return "DataFormat_Unknown";
}

wxString VpcDefinitions::GetStringVpcTreeType(VpcTreeType type) {
    return type == Tree_KdTree_Symmetric ? "Tree_KdTree_Symmetric" : "Tree_Octree";
}
