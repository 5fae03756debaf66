#pragma once

#include "platform/OdDbPointCloudEx.h"

/// Stand-in for the point-cloud entity of the host's point-cloud module.
class OD_EXPORT PcDbPointCloud : public OdDbPointCloudEx {
    ODRX_DECLARE_MEMBERS(PcDbPointCloud)
};
