#pragma once

#include <map>

#include "platform/OdString.h"

/// Translates between the host's colour schemes, which GUIDs name, and the numbers of
/// VpcColorScheme.
class GiPcColorSchemeMap {
public:
    GiPcColorSchemeMap();

    /// 0, for scan colours, where no scheme has this GUID.
    int scheme(const OdString& guid) const;
    /// Empty, for scan colours, where no scheme has this number.
    OdString guid(int scheme) const;

private:
    std::map<OdString, int> schemes_;
};
