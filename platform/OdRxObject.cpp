#include "platform/OdRxObject.h"

OdRxObject::~OdRxObject() = default;

const OdRxClass* OdRxObject::desc() {
    static const OdRxClass description(nullptr);
    return &description;
}

const OdRxClass* OdRxObject::isA() const {
    return desc();
}
