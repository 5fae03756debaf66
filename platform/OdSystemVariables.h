#pragma once

#include <map>
#include <string>

#include "platform/OdPlatform.h"
#include "platform/OdString.h"

/// Stand-in for those of the host's system variables that are whole numbers.
class OdSystemVariables {
public:
    /// The value of the variable; 0 where none has that name.
    OdInt32 getInt(const OdString& name) const;
    void setInt(const OdString& name, OdInt32 value);

private:
    std::map<std::wstring, OdInt32> values_{{L"POINTCLOUDPOINTMAX", 5000000}};
};

/// The host's one set of variables.
OdSystemVariables& odSystemVariables();
