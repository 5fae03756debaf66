#include "platform/OdRxObject.h"

OdRxObject::~OdRxObject() = default;
