#include "platform/OdDbEntity.h"

ODRX_DEFINE_MEMBERS(OdDbEntity, OdDbObject)
