#include "platform/OdRxClass.h"

bool OdRxClass::isDerivedFrom(const OdRxClass* other) const {
    const OdRxClass* ancestor = this;
    while (ancestor != nullptr && ancestor != other) ancestor = ancestor->parent_;
    return ancestor != nullptr;
}
