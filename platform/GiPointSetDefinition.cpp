#include "platform/GiPointSetDefinition.h"

GiPointSetDefinition::~GiPointSetDefinition() = default;
