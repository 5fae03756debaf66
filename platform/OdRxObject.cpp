#include "platform/OdRxObject.h"

OdRxObject::~OdRxObject() = default;

const OdRxClass* OdRxObject::desc() {
    static const OdRxClass description(L"OdRxObject", nullptr);
    return &description;
}

const OdRxClass* OdRxObject::isA() const {
    return desc();
}
