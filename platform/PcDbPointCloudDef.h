#pragma once

#include "platform/OdRxObject.h"

/// Stand-in for the host's point-cloud definition, which the library is handed and leaves alone.
class PcDbPointCloudDef : public OdRxObject {};
