#include "platform/OdSystemVariables.h"

OdInt32 OdSystemVariables::getInt(const OdString& name) const {
    const auto found = values_.find(name.c_str());
    return found == values_.end() ? 0 : found->second;
}

void OdSystemVariables::setInt(const OdString& name, OdInt32 value) {
    values_[name.c_str()] = value;
}

OdSystemVariables& odSystemVariables() {
    static OdSystemVariables variables;
    return variables;
}
