#include "platform/OdDbPointCloudDefEx.h"

ODRX_DEFINE_MEMBERS(OdDbPointCloudDefEx, OdDbObject)
