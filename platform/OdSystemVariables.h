#pragma once

#include <map>
#include <string>

#include "platform/OdPlatform.h"
#include "platform/OdString.h"

/// Stand-in for those of the host's system variables that are whole numbers.
class OdSystemVariables {
public:
    /// The variable's value; 0 where no variable has that name.
    OdInt32 getInt(const OdString& name) const;
    void setInt(const OdString& name, OdInt32 value);

private:
    std::map<std::wstring, OdInt32> values_{{L"POINTCLOUDPOINTMAX", 5000000}};
};

/// The only set of variables of the host.
OdSystemVariables& odSystemVariables();
