#pragma once

#include "platform/OdDbPointCloudDefEx.h"

class GiPointSetDefinition;

/// Stand-in for the point-cloud definition of the host's point-cloud module.
class OD_EXPORT PcDbPointCloudDef : public OdDbPointCloudDefEx {
    ODRX_DECLARE_MEMBERS(PcDbPointCloudDef)

public:
    /// The loaded points; null where none are. They stay with whoever set them, who takes them back
    /// by null before they are freed.
    GiPointSetDefinition* pointSet() const { return pointSet_; }
    void setPointSet(GiPointSetDefinition* set) { pointSet_ = set; }
    /// How many points the file holds; 0 where nothing is loaded.
    unsigned long long totalPointsCount() const;

private:
    GiPointSetDefinition* pointSet_ = nullptr;
};
