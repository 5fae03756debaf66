#pragma once

#include <vector>

#include <wx/string.h>

enum VpcTreeType : int;

/// What the host wants to have prepared.
struct TreePreparePars {
    /// Stored in the file's header as it is; hosts pass their unit.
    unsigned long long headerValue = 0;
    /// The folder for temporary files; ends with a separator.
    wxString workingFolder;
    /// Full paths of scans of one format. Their order numbers the sources of the points.
    std::vector<wxString> inputFiles;
    /// Full path of the tree file to write.
    wxString outputFile;
    /// 0 is an octree.
    VpcTreeType treeType{};
    unsigned long long maxPointsPerNode = 0;
    unsigned long long maxLevel = 0;
};
