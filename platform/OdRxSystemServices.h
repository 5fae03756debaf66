#pragma once

#include "platform/OdString.h"

/// Stand-in for the host SDK's system services.
class OdRxSystemServices {
public:
    /// A new random identifier, such as "3f2504e0-4f89-41d3-9a0c-0305e82c3301".
    OdString createGuid();
};

/// The only services object of the host; never null.
OdRxSystemServices* odrxSystemServices();
