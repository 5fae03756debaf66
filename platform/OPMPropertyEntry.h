#pragma once

#include "platform/OPMVariant.h"
#include "platform/OdArray.h"
#include "platform/OdString.h"

/// Stand-in for the description of a property in the host's palette.
struct OPMPropertyEntry {
    int id = 0;
    OdString name;
    OdString category;
    /// Which editor the palette shows, as the host numbers them.
    int type = 0;
    /// What the editor offers to choose from.
    OdArray<OdString> predefinedStrings;
    /// The index of the value that several entities share; -1 for none.
    int sharedValue = -1;
    OdArray<OPMVariant> values;
    OdArray<OPMVariant> defaultValues;
};
