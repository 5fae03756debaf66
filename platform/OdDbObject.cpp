#include "platform/OdDbObject.h"

#include "platform/OdError.h"

ODRX_DEFINE_MEMBERS(OdDbObject, OdRxObject)

void OdDbObject::assertWriteEnabled() const {
    if (!writeEnabled_) throw OdError(L"not opened for write");
}
