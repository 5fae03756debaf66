#pragma once

#include "platform/OdDbUnits.h"
#include "platform/OdPlatform.h"

/// Stand-in for the host SDK's drawing.
class OD_EXPORT OdDbDatabase {
public:
    /// The drawing's unit.
    OdDb::UnitsValue getINSUNITS() const { return unit_; }
    void setINSUNITS(OdDb::UnitsValue unit) { unit_ = unit; }

private:
    OdDb::UnitsValue unit_ = OdDb::kUnitsUndefined;
};
