#pragma once

#include "platform/OdPlatform.h"

/// Stand-in for the base of the host SDK's run-time classes: deleted through a pointer to it.
class OD_EXPORT OdRxObject {
public:
    virtual ~OdRxObject();

protected:
    OdRxObject() = default;
    OdRxObject(const OdRxObject&) = default;
    OdRxObject& operator=(const OdRxObject&) = default;
};
