#pragma once

#include "platform/OdDbObject.h"

/// Stand-in for the base class of everything that the host draws.
class OD_EXPORT OdDbEntity : public OdDbObject {
    ODRX_DECLARE_MEMBERS(OdDbEntity)
};
