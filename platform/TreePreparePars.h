#pragma once

#include <vector>

#include <wx/string.h>

enum VpcTreeType : int;

/// What the host asks to be prepared.
struct TreePreparePars {
    /// Kept in the file's header untouched; the host keeps its unit there.
    unsigned long long headerValue = 0;
    /// For temporary files; ends with a separator.
    wxString workingFolder;
    /// Full paths of scans of one format, in the order that numbers the points' sources.
    std::vector<wxString> inputFiles;
    /// Full path of the tree file to write.
    wxString outputFile;
    /// 0 is an octree.
    VpcTreeType treeType{};
    unsigned long long maxPointsPerNode = 0;
    unsigned long long maxLevel = 0;
};
