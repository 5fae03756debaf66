#include "platform/PcDbPointCloudDef.h"

#include "platform/GiPointSetDefinition.h"

ODRX_DEFINE_MEMBERS(PcDbPointCloudDef, OdDbPointCloudDefEx)

unsigned long long PcDbPointCloudDef::totalPointsCount() const {
    return pointSet_ == nullptr ? 0 : pointSet_->getTotalNrPoints();
}
