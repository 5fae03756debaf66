#pragma once

#include <wx/string.h>

#include "platform/OdGePoint3d.h"

namespace vpc {

/// What the arrays of a point set do not tell about its last update, by vpcGetViewFacts.
struct ViewFacts {
    /// The level shown, 0 the coarsest; 0 before the first update.
    unsigned long long level = 0;
    /// How many levels there are to choose from.
    unsigned long long levels = 0;
    /// The nodes of which points are shown.
    unsigned long long nodes = 0;
    /// The points of chosen nodes that could not be read, because the file has become shorter since
    /// it was loaded or its disk fails. Sections and clippings might have left out some of them.
    unsigned long long pointsMissing = 0;
    /// A sentence that says why, and names the file; empty where none is missing.
    wxString problem;
    /// What POINTCLOUDPOINTMAX asked for; 0 before the first update. 50 and less ask for nothing.
    unsigned long long budgetWanted = 0;
    /// The slots there are. They are fewer than wanted where memory was short: the update then
    /// chose a level for the points wanted and filled the slots with its first nodes only. It is
    /// not tried again before the variable changes; set it to this number, or to fewer.
    unsigned long long budget = 0;
    /// The box around all points of the file, in their own frame and a little larger than they
    /// need. The minimum lies above the maximum where there are no points.
    OdGePoint3d boundsMin;
    OdGePoint3d boundsMax;
    /// What the two ends of the colour ramp stand for: elevations in the drawing, in its units, or
    /// intensities from 0 to 255. Both are 0 where the colours are the scans'.
    double valueMin = 0.0;
    double valueMax = 0.0;
};

}  // namespace vpc
