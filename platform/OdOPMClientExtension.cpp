#include "platform/OdOPMClientExtension.h"

OdOPMClientExtension::~OdOPMClientExtension() = default;

void OdOPMClientExtension::endPropertiesUpdate(OdDbEntity* /*entity*/) {
}

void OdOPMClientExtension::endPropertiesUpdate(const OdArray<OdDbEntity*>& /*entities*/) {
}

int OdOPMClientExtension::getPropertyHidden(int /*id*/) {
    return -1;
}
