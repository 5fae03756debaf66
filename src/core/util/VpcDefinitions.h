#pragma once

#include <wx/string.h>

/// Colour ramp for points. With ScanColors they keep the colours of the scan.
enum VpcColorScheme : int {
    VPC_ColorScheme_ScanColors = 0,
    VPC_ColorScheme_Spectrum = 1,
    VPC_ColorScheme_Earth = 2,
    VPC_ColorScheme_Hydro = 3,
    VPC_ColorScheme_Gray = 4,
    VPC_ColorScheme_Reds = 5,
    VPC_ColorScheme_Greens = 6,
    VPC_ColorScheme_Blues = 7
};

/// Which value of a point is turned into its colour.
enum VpcStylizationType : int {
    VPC_Stylization_SCANCOLORS = 0,
    VPC_Stylization_ELEVATION = 1,
    VPC_Stylization_INTENSITY = 2,
    VPC_Stylization_NONE = 3
};

/// Format of a scan file.
enum VpcDataFormat : int {
    DataFormat_LAS = 1,
    DataFormat_PTS = 2,
    DataFormat_PTX = 3,
    DataFormat_Unknown = 4
};

/// How the point tree divides a node.
enum VpcTreeType : int { Tree_Octree = 0, Tree_KdTree_Symmetric = 1 };

/// Which files FileTools::DeleteFilesInFolder deletes; any other value works like the last.
enum VpcCleanFolderMode : int {
    CleanFolderKeepListed = 0,
    CleanFolderDeleteByPrefix = 1,
    CleanFolderDeleteAll = 2
};

/// Names of enumeration values, spelled as their enumerators. A value outside its enumeration
/// gets the name of ScanColors, SCANCOLORS, Unknown or Octree.
class VpcDefinitions {
public:
    static wxString GetVpcColorScheme(VpcColorScheme scheme);
    static wxString GetVpcStylizationType(VpcStylizationType type);
    static wxString GetStringVpcDataFormat(VpcDataFormat format);
    static wxString GetStringVpcTreeType(VpcTreeType type);
};
