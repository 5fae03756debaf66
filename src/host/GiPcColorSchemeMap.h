#pragma once

#include <map>

#include "platform/OdString.h"

/// Translates between the GUIDs that name the host's colour schemes and the numbers of
/// VpcColorScheme.
class GiPcColorSchemeMap {
public:
    GiPcColorSchemeMap();

    /// The scheme's number; 0, for scan colours, where no scheme has this GUID.
    int scheme(const OdString& guid) const;
    /// The scheme's GUID; empty, for scan colours, where no scheme has this number.
    OdString guid(int scheme) const;

private:
    std::map<OdString, int> schemes_;
};
