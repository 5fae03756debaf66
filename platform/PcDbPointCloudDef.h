#pragma once

#include "platform/OdDbPointCloudDefEx.h"

class GiPointSetDefinition;

/// Stand-in for the point-cloud definition of the host's point-cloud module.
class OD_EXPORT PcDbPointCloudDef : public OdDbPointCloudDefEx {
    ODRX_DECLARE_MEMBERS(PcDbPointCloudDef)

public:
    /// The loaded points, or null. Whoever sets them owns them, and sets null before freeing them.
    GiPointSetDefinition* pointSet() const { return pointSet_; }
    void setPointSet(GiPointSetDefinition* set) { pointSet_ = set; }
    /// How many points the file holds; 0 when nothing is loaded.
    unsigned long long totalPointsCount() const;

private:
    GiPointSetDefinition* pointSet_ = nullptr;
};
