#include "platform/PcDbPointCloud.h"

ODRX_DEFINE_MEMBERS(PcDbPointCloud, OdDbPointCloudEx)
